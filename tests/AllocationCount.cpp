#include "AllocationCount.h"

#include <atomic>
#include <cstdlib>
#include <new>

#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) || __has_feature(memory_sanitizer)
#define VORBEL_SANITIZED
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define VORBEL_SANITIZED
#endif
#if defined(__GLIBC__) && !defined(VORBEL_SANITIZED)  // a sanitizer has its own malloc
#define VORBEL_COUNT_MALLOC
#endif

namespace {

std::atomic<long> allocations{0};

}  // namespace

long allocationCount() {
    return allocations;
}

bool countsMalloc() {
#ifdef VORBEL_COUNT_MALLOC
    return true;
#else
    return false;
#endif
}

#ifdef VORBEL_COUNT_MALLOC

extern "C" {

// NOLINTBEGIN(bugprone-reserved-identifier): glibc's own names for its allocator
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t nmemb, std::size_t size);
void* __libc_realloc(void* ptr, std::size_t size);
// NOLINTEND(bugprone-reserved-identifier)

void* malloc(std::size_t size) {
    ++allocations;
    return __libc_malloc(size);
}

void* calloc(std::size_t nmemb, std::size_t size) {
    ++allocations;
    return __libc_calloc(nmemb, size);
}

void* realloc(void* ptr, std::size_t size) {
    ++allocations;
    return __libc_realloc(ptr, size);
}
}

#endif

void* operator new(std::size_t size) {
    ++allocations;
    if (void* memory = std::malloc(size)) {
        return memory;
    }
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}
