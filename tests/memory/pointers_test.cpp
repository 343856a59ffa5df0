// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/generic/abilities.hpp>
#include <zolt/generic/clone_interface.hpp>
#include <zolt/memory/rc_pointer.hpp>
#include <zolt/memory/shared_pointer.hpp>

#include <gtest/gtest.h>

namespace {

using namespace ZOLT_2_18;
using memory::pointers::make_rc;
using memory::pointers::make_shared_pointer;
using memory::pointers::rc_pointer;
using memory::pointers::shared_pointer;

struct node : generic::abilities::reference_count_pointer_ability<node> {
    explicit node(int& live) : alive(live) { ++alive; }
    node(node const& other) : reference_count_pointer_ability(other), alive(other.alive) { ++alive; }
    ~node() override { --alive; }
    int& alive;
    rc_pointer<node> next;
};
struct special_node : node {
    using node::node;
};

struct plain {
    bool heap_allocated = false;
    unsigned int reference_count = 0;
    int& alive;
    explicit plain(int& live) : alive(live) { ++alive; }
    ~plain() { --alive; }
};

template <typename Pointer, typename Object, typename Make>
void check_life_cycle(Make make) {
    int alive = 0;
    Pointer first = make(alive);
    EXPECT_TRUE(first->heap_allocated);
    EXPECT_EQ(1u, first->reference_count);
    Pointer second(first);
    EXPECT_EQ(2u, first->reference_count);
    EXPECT_TRUE(first == second && first == second.get() && !(first != second) && first != nullptr);

    Pointer& self = first;
    first = self;
    first = first.get();
    EXPECT_EQ(2u, first->reference_count) << "self-assignment";

    first.reset();
    EXPECT_TRUE(first == nullptr && !first);
    EXPECT_EQ(1u, second->reference_count);
    EXPECT_EQ(1, alive);
    Pointer third(std::move(second));
    EXPECT_EQ(1u, third->reference_count);
    third = make(alive);
    EXPECT_EQ(1, alive) << "the replaced object is gone";
    third = NULL; // every way to write a null pointer
    EXPECT_EQ(0, alive);
    second = {};
    EXPECT_TRUE(third == NULL && second == nullptr && Pointer(NULL) == Pointer(nullptr));

    Object local(alive);
    {
        Pointer const pointer(&local);
        EXPECT_EQ(1u, local.reference_count);
    }
    EXPECT_EQ(0u, local.reference_count);
    EXPECT_EQ(1, alive) << "a local is never deleted";

    EXPECT_THROW(*Pointer(), exceptions::runtime_error);
    EXPECT_THROW(Pointer()->reference_count = 1, exceptions::runtime_error);
    static_assert(sizeof(Pointer) == sizeof(void*));
}

TEST(RcPointer, LifeCycle) {
    check_life_cycle<rc_pointer<node>, node>([](int& alive) { return make_rc<node>(alive); });
}

TEST(SharedPointer, LifeCycle) {
    check_life_cycle<shared_pointer<plain>, plain>([](int& alive) { return make_shared_pointer<plain>(alive); });
}

TEST(RcPointer, TakesDerivedPointers) {
    int alive = 0;
    rc_pointer<node> const base = make_rc<special_node>(alive);
    EXPECT_EQ(1u, base->reference_count);
}

TEST(RcPointer, ReleasesBeforeItDeletes) {
    int alive = 0;
    auto head = make_rc<node>(alive);
    head->next = make_rc<node>(alive);
    head = head->next; // the old head owns the new one
    EXPECT_EQ(1, alive);
    head->next = head; // a cycle that its maker breaks
    rc_pointer<node> const keep = head;
    head->next.reset();
    EXPECT_EQ(2u, keep->reference_count);
}

TEST(Abilities, CopiesStartAfreshAndAssignmentLeavesTheCountAlone) {
    int alive = 0;
    auto const counted = make_rc<node>(alive);
    node const copy(*counted);
    EXPECT_FALSE(copy.heap_allocated);
    EXPECT_EQ(0u, copy.reference_count);

    memory::pointers::shared_count source, target;
    source.heap_allocated = true;
    source.reference_count = 5;
    target = source;
    EXPECT_EQ(0u, memory::pointers::shared_count(source).reference_count);
    EXPECT_FALSE(target.heap_allocated);

    generic::abilities::reference_count_pointer_ability<int> from, to;
    from.reference_count = 3;
    to.reference_count = 9;
    to = from;
    EXPECT_EQ(9u, to.reference_count);
}

TEST(CloneInterface, ClonesThroughTheAbstractClass) {
    struct number : generic::clone_interface {
        explicit number(int n) : value(n) {}
        number* clone() const override { return new number(*this); }
        int value;
    };
    number const original(4);
    generic::clone_interface const& abstract = original;
    std::unique_ptr<generic::clone_interface> const copy(abstract.clone());
    EXPECT_EQ(4, dynamic_cast<number&>(*copy).value);
}

} // namespace
