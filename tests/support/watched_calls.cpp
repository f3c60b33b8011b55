#include "support/watched_calls.h"

#include <cstdlib>
#include <new>

namespace eventsviewer {

int allocations = 0;
const void* lastFreed = nullptr;
int objects = 0;
std::size_t pretendedLength = 0;
bool memoryIsExhausted = false;

} // namespace eventsviewer

using namespace eventsviewer;

// The linker redirects the program's own calls of malloc, free and strlen to here (--wrap).
// NOLINTBEGIN
extern "C" {

void* __real_malloc(std::size_t size);
void __real_free(void* memory);
std::size_t __real_strlen(const char* text);

void* __wrap_malloc(std::size_t size)
{
    ++allocations;
    void* const memory = memoryIsExhausted ? nullptr : __real_malloc(size);
    if (memory == lastFreed) {
        lastFreed = nullptr;
    }
    return memory;
}

void __wrap_free(void* memory)
{
    lastFreed = memory;
    __real_free(memory);
}

std::size_t __wrap_strlen(const char* text)
{
    return pretendedLength != 0 ? pretendedLength : __real_strlen(text);
}
}

void* operator new(std::size_t size)
{
    void* const memory = __real_malloc(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    ++objects;
    return memory;
}

// The sanitizers have their own, and would report that its memory is freed by a different function.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    void* const memory = __real_malloc(size);
    objects += memory != nullptr ? 1 : 0;
    return memory;
}

void operator delete(void* memory) noexcept
{
    objects -= memory != nullptr ? 1 : 0;
    __real_free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    operator delete(memory);
}
// NOLINTEND
