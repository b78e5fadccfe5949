#include "AllOperations.h"
#include "AllocationCount.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <initializer_list>

namespace {

template <class F>
long allocationsOf(F work) {
    const long before = allocationCount();
    work();
    return allocationCount() - before;
}

/// Names the operations whose calls allocate.
class Allocating {
public:
    void call(const char* name, int order = -1) {
        const long count = allocationCount();
        if (m_name != nullptr && count != m_count) {
            ADD_FAILURE() << m_name << " order " << m_order << " allocates " << count - m_count << " times";
        }
        m_name = name;
        m_order = order;
        m_count = allocationCount();
    }

    template <class... Values>
    void add(const Values&... /*values*/) {}

    void addAll(const char* /*letters*/, std::initializer_list<double> /*values*/) {}

private:
    const char* m_name = nullptr;
    int m_order = -1;
    long m_count = 0;
};

}  // namespace

TEST(Allocation, TheCountSeesAllocations) {
    EXPECT_GT(allocationsOf([] { ::operator delete(::operator new(16)); }), 0);
    if (countsMalloc()) {
        EXPECT_EQ(allocationsOf([] {
                      void* volatile memory = std::malloc(16);
                      std::free(memory);
                  }),
                  1);
    }
}

TEST(Allocation, NoOperationAllocates) {
    for (std::uint64_t i = 0; i < 100 && !HasFailure(); ++i) {
        for (const Case& inputs : {regularCase(i), edgeCase(i)}) {
            CVorbel object;
            Allocating sink;
            AllOperations(object, inputs, sink).run();
        }
    }
}
