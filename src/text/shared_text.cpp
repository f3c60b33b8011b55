#include "text/shared_text.h"

#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace eventsviewer {

struct SharedText::Record {
    char* data;             // NUL-terminated; null means no text
    std::uint32_t capacity; // bytes at data, the NUL included; 0 for a borrowed text
    std::uint8_t owned;     // data came from malloc and is freed with the record
    std::uint8_t borrowed;  // data is somebody else's constant: the length is not cached
    std::uint32_t length;   // 0 means not known
    std::int32_t references;
};

SharedText::SharedText(const SharedText& other) noexcept : record_(other.record_)
{
    if (record_ != nullptr) {
        ++record_->references;
    }
}

void SharedText::release() noexcept
{
    if (--record_->references > 0) {
        return;
    }
    if (record_->owned != 0) {
        std::free(record_->data);
    }
    delete record_;
}

const char* SharedText::characters() const noexcept
{
    return record_ != nullptr && record_->data != nullptr ? record_->data : "";
}

std::uint32_t SharedText::length() const noexcept
{
    if (record_ == nullptr || record_->data == nullptr) {
        return 0;
    }
    const bool cached = record_->length != 0 && record_->owned != 0 && record_->borrowed == 0;
    if (!cached) {
        record_->length = static_cast<std::uint32_t>(std::strlen(record_->data));
    }
    return record_->length;
}

SharedText textFromLiteral(const char* text)
{
    SharedText handle(new SharedText::Record{nullptr, 0, 1, 0, 0, 1});
    const std::size_t length = std::strlen(text);
    // A text too long to be measured in 32 bits counts as one there is no memory for.
    const bool measurable = length < UINT32_MAX;
    if (char* const copy = measurable ? static_cast<char*>(std::malloc(length + 1)) : nullptr) {
        std::memcpy(copy, text, length + 1);
        handle.record_->data = copy;
        handle.record_->capacity = static_cast<std::uint32_t>(length + 1);
        handle.record_->length = static_cast<std::uint32_t>(length);
    }
    return handle;
}

SharedText textFromConstant(const char* text)
{
    // Nothing writes through data, so the constant stays one.
    return SharedText(new SharedText::Record{const_cast<char*>(text), 0, 0, 1, 0, 1});
}

SharedText formatText(const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    std::va_list again;
    va_copy(again, arguments);

    // Most texts fit here, and need not be formatted twice.
    char buffer[512];
    const int length = std::vsnprintf(buffer, sizeof buffer, format, arguments);
    SharedText text;
    if (length > 0) {
        const std::size_t capacity = static_cast<std::size_t>(length) + 1;
        if (char* const data = static_cast<char*>(std::malloc(capacity))) {
            if (capacity <= sizeof buffer) {
                std::memcpy(data, buffer, capacity);
            } else {
                std::vsnprintf(data, capacity, format, again);
            }
            text = SharedText(new SharedText::Record{data, static_cast<std::uint32_t>(capacity), 1,
                                                     0, static_cast<std::uint32_t>(length), 1});
        }
    }
    va_end(again);
    va_end(arguments);
    return text;
}

} // namespace eventsviewer
