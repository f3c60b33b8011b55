#include "text/shared_text.h"

#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

static_assert(static_cast<char>(-1) > 0, "to be compiled with -funsigned-char");

namespace eventsviewer {

struct SharedText::Record {
    char* data = nullptr;       // NUL-terminated; null means no text
    std::uint32_t capacity = 0; // bytes at data, the NUL included; 0 for a borrowed text
    std::uint8_t owned = 0;     // data came from malloc and is freed with the record
    std::uint8_t borrowed = 0;  // data is a constant of the caller: the length is not cached
    std::uint32_t length = 0;   // 0 means not known
    std::int32_t references = 1;

    void own(char* text, std::size_t textLength)
    {
        data = text;
        capacity = static_cast<std::uint32_t>(textLength + 1);
        owned = 1;
        length = static_cast<std::uint32_t>(textLength);
    }
};

namespace {

void (*textMemoryHandler)() = nullptr;

char* memoryFor(std::size_t bytes)
{
    void* const memory = std::malloc(bytes);
    if (memory == nullptr && textMemoryHandler != nullptr) {
        textMemoryHandler();
    }
    return static_cast<char*>(memory);
}

} // namespace

void setTextMemoryHandler(void (*handler)())
{
    textMemoryHandler = handler;
}

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
    SharedText handle(new SharedText::Record);
    const std::size_t length = std::strlen(text);
    // A string whose length does not fit 32 bits is treated as if there were no memory for it.
    const bool measurable = length < UINT32_MAX;
    if (char* const copy = measurable ? memoryFor(length + 1) : nullptr) {
        std::memcpy(copy, text, length + 1);
        handle.record_->own(copy, length);
    }
    return handle;
}

SharedText textFromConstant(const char* text)
{
    SharedText handle(new SharedText::Record);
    handle.record_->data = const_cast<char*>(text); // nothing writes through it
    handle.record_->borrowed = 1;
    return handle;
}

SharedText formatText(const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    std::va_list again;
    va_copy(again, arguments);

    // Most strings fit here and need not be formatted twice, once to measure them.
    char buffer[512];
    const int formatted = std::vsnprintf(buffer, sizeof buffer, format, arguments);
    SharedText text;
    if (formatted > 0) {
        const auto length = static_cast<std::size_t>(formatted);
        if (char* const data = memoryFor(length + 1)) {
            if (length < sizeof buffer) {
                std::memcpy(data, buffer, length + 1);
            } else {
                std::vsnprintf(data, length + 1, format, again);
            }
            text = SharedText(new SharedText::Record);
            text.record_->own(data, length);
        }
    }
    va_end(again);
    va_end(arguments);
    return text;
}

} // namespace eventsviewer
