#include "Templates/SharedPtr.h"

#include <thread>
#include <vector>

#include <gtest/gtest.h>

using Vellum::Templates::SharedPtr;

namespace
{
struct Tracked
{
    VELLUM_CLASS_ALLOCATION
    explicit Tracked(int & alive, int value = 0) : alive_(alive), value(value) { ++alive_; }
    virtual ~Tracked() { --alive_; }
    int & alive_;
    int value;
};

struct Derived : Tracked
{
    VELLUM_CLASS_ALLOCATION
    Derived(int & alive, int & derivedAlive) : Tracked(alive, 7), derivedAlive_(derivedAlive) { ++derivedAlive_; }
    ~Derived() override { --derivedAlive_; }
    int & derivedAlive_;
    char padding[100] = {};
};
} // namespace

TEST(SharedPtrTest, CountsOwnersAndReleasesWithTheLast)
{
    SharedPtr<Tracked> empty;
    SharedPtr<Tracked> emptyCopy(empty);
    EXPECT_EQ(nullptr, empty.get());
    EXPECT_FALSE(empty.owned());
    EXPECT_EQ(2, empty.use_count());
    EXPECT_TRUE(empty.deallocator() == &Vellum::Platform::malloc_alloc::deallocate);

    int alive = 0;
    {
        SharedPtr<Tracked> a(new Tracked(alive, 3));
        EXPECT_TRUE(a.owned() && a.unique());
        EXPECT_EQ(3, (*a).value);
        {
            SharedPtr<Tracked> b(a);
            SharedPtr<Tracked> c;
            c = b;
            EXPECT_EQ(3, a.use_count());
            EXPECT_TRUE(c == a);
        }
        EXPECT_EQ(1, alive);
        EXPECT_TRUE(a.unique());

        // Reset of one of two: the object stays until the other goes.
        SharedPtr<Tracked> b(a);
        int * oldCount = a.pn();
        a.reset();
        EXPECT_EQ(1, alive);
        EXPECT_FALSE(a.owned());
        EXPECT_EQ(1, a.use_count());
        EXPECT_NE(oldCount, a.pn());
        EXPECT_TRUE(b.unique());

        // reset(T *) takes the new object and lets go of the old one.
        b.reset(new Tracked(alive, 2));
        EXPECT_EQ(1, alive);
        SharedPtr<Tracked> keep(b);
        b.reset(new Tracked(alive, 4));
        EXPECT_EQ(2, alive);
        EXPECT_EQ(2, keep->value);
        EXPECT_TRUE(keep.unique());

        // Self-assignment keeps the object and the count; assignment releases the old object.
        SharedPtr<Tracked> & alias = keep;
        keep = alias;
        EXPECT_EQ(2, alive);
        keep = b;
        EXPECT_EQ(1, alive);
        EXPECT_EQ(2, b.use_count());

        SharedPtr<Tracked> y(new Tracked(alive, 20));
        int * bCount = b.pn();
        b.swap(y);
        EXPECT_EQ(20, b->value);
        EXPECT_EQ(4, y->value);
        EXPECT_EQ(bCount, y.pn());
        EXPECT_TRUE(b != y);
        keep = SharedPtr<Tracked>();
    }
    EXPECT_EQ(0, alive);
}

TEST(SharedPtrTest, NotOwnedObjectSurvives)
{
    int alive = 0;
    Tracked * object = new Tracked(alive, 5);
    {
        SharedPtr<Tracked> a(object, false);
        SharedPtr<Tracked> b(a);
        EXPECT_FALSE(b.owned());
        EXPECT_EQ(object, b.get());
        a.reset();
        b = SharedPtr<Tracked>();
    }
    EXPECT_EQ(1, alive);
    delete object;
}

TEST(SharedPtrTest, ConvertingFromDerived)
{
    int alive = 0;
    int derivedAlive = 0;
    {
        SharedPtr<Derived> derived(new Derived(alive, derivedAlive));
        SharedPtr<Tracked> base(derived);
        EXPECT_EQ(derived.pn(), base.pn());
        EXPECT_EQ(2, derived.use_count());
        EXPECT_EQ(static_cast<Tracked *>(derived.get()), base.get());
        EXPECT_EQ(7, base->value);
        EXPECT_TRUE(base.owned());
        derived.reset();
        EXPECT_EQ(1, derivedAlive);
        EXPECT_TRUE(base.unique());
        SharedPtr<Tracked> other;
        other = SharedPtr<Derived>(new Derived(alive, derivedAlive));
        EXPECT_EQ(2, derivedAlive);
        EXPECT_TRUE(other.unique());
    }
    // Released through the base: the derived part went too.
    EXPECT_EQ(0, derivedAlive);
    EXPECT_EQ(0, alive);
}

TEST(SharedPtrTest, CountsAreAtomic)
{
    int alive = 0;
    SharedPtr<Tracked> shared(new Tracked(alive));
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&shared] {
            for (int i = 0; i < 20000; ++i)
            {
                SharedPtr<Tracked> copy(shared);
                SharedPtr<Tracked> other;
                other = copy;
            }
        });
    for (std::thread & t : threads)
        t.join();
    EXPECT_EQ(1, shared.use_count());
    EXPECT_EQ(1, alive);
    shared.reset();
    EXPECT_EQ(0, alive);
}
