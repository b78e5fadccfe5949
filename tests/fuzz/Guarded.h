#ifndef VORBEL_TESTS_FUZZ_GUARDED_H
#define VORBEL_TESTS_FUZZ_GUARDED_H

#include <cstddef>
#include <cstdlib>
#include <cstring>

#if defined(__SANITIZE_ADDRESS__)
#define VORBEL_POISONED_GUARDS
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define VORBEL_POISONED_GUARDS
#endif
#endif
#ifdef VORBEL_POISONED_GUARDS
#include <sanitizer/asan_interface.h>
#endif

/// A caller's record between two zones that nobody else may touch: the address sanitizer stops at a read or a write
/// there, and without it the end of the record's life finds a write.
template <class T>
class Guarded {
public:
    template <class... Arguments>
    explicit Guarded(const Arguments&... arguments) : m_value(arguments...) {
        std::memset(m_before, kFill, kZone);
        std::memset(m_after, kFill, kZone);
#ifdef VORBEL_POISONED_GUARDS
        ASAN_POISON_MEMORY_REGION(m_before, kZone);
        ASAN_POISON_MEMORY_REGION(m_after, kZone);
#endif
    }

    Guarded(const Guarded&) = delete;
    Guarded& operator=(const Guarded&) = delete;

    ~Guarded() {
#ifdef VORBEL_POISONED_GUARDS
        ASAN_UNPOISON_MEMORY_REGION(m_before, kZone);
        ASAN_UNPOISON_MEMORY_REGION(m_after, kZone);
#endif
        for (std::size_t i = 0; i < kZone; ++i) {
            if (m_before[i] != kFill || m_after[i] != kFill) {
                std::abort();
            }
        }
    }

    T& operator*() {
        return m_value;
    }

    T* operator->() {
        return &m_value;
    }

    T* get() {
        return &m_value;
    }

private:
    static constexpr std::size_t kZone = 256;
    static constexpr unsigned char kFill = 0xa5;

    alignas(64) unsigned char m_before[kZone];
    T m_value;
    alignas(8) unsigned char m_after[kZone];
};

#endif
