#pragma once

#include <iostream>
#include <sstream>
#include <streambuf>
#include <string>

namespace eventsviewer {

/// Keeps what is written to std::cout, and counts its flushes, for as long as this object lives.
/// std::cout is in the good state afterwards.
class CapturedCout {
public:
    CapturedCout() : original_(std::cout.rdbuf(&buffer_)) {}
    CapturedCout(const CapturedCout&) = delete;
    CapturedCout& operator=(const CapturedCout&) = delete;
    ~CapturedCout() { std::cout.rdbuf(original_); }

    std::string text() const { return buffer_.str(); }
    int flushes() const { return buffer_.flushes; }

private:
    struct Buffer : std::stringbuf {
        int flushes = 0;

    protected:
        int sync() override
        {
            ++flushes;
            return 0;
        }
    };

    Buffer buffer_;
    std::streambuf* original_;
};

} // namespace eventsviewer
