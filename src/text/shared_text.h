#pragma once

#include <cstdint>
#include <utility>

namespace eventsviewer {

class SharedText;

/// A new string of any length, formatted as by printf. A null handle if that is empty, if
/// formatting fails, or if there is no memory for the characters.
[[gnu::format(printf, 1, 2)]] SharedText formatText(const char* format, ...);

/// Called when there is no memory for the characters of a text, which else reads as empty. None
/// unless set.
void setTextMemoryHandler(void (*handler)());

/// A handle to a reference-counted string that its holders share and nobody changes. A null handle,
/// and a string whose memory could not be allocated, read as the empty string.
/// Single-threaded: the references are counted in a plain integer. The form of the handle and of
/// its record is fixed, so it can be copied, which nobody does, and has a capacity that nobody
/// reads.
class SharedText {
public:
    SharedText() noexcept = default;
    SharedText(const SharedText& other) noexcept;
    SharedText(SharedText&& other) noexcept : record_(std::exchange(other.record_, nullptr)) {}
    SharedText& operator=(SharedText other) noexcept
    {
        std::swap(record_, other.record_);
        return *this;
    }
    ~SharedText()
    {
        if (record_ != nullptr) {
            release();
        }
    }

    /// The NUL-terminated text, never a null pointer; valid while a handle shares the text.
    const char* characters() const noexcept;

    /// Bytes of the text, the terminating NUL not counted.
    std::uint32_t length() const noexcept;

private:
    struct Record;
    explicit SharedText(Record* record) noexcept : record_(record) {}
    void release() noexcept;

    friend SharedText textFromLiteral(const char* text);
    friend SharedText textFromConstant(const char* text);
    friend SharedText formatText(const char* format, ...);

    Record* record_ = nullptr;
};

/// A new string that owns a copy of `text`. Without memory for the copy it reads as the empty
/// string.
SharedText textFromLiteral(const char* text);

/// A new string that borrows `text`, a constant that outlives it, and copies nothing. The tables
/// are constants, not objects made at every start, so each lookup makes the record that it returns.
SharedText textFromConstant(const char* text);

} // namespace eventsviewer
