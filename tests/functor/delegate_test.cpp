// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/functor/delegate.hpp>
#include <zolt/functor/member_function.hpp>
#include <zolt/strings/ustring.hpp>

#include <gtest/gtest.h>

#include <memory>

namespace {

using namespace ZOLT_2_18;
using functor::delegate_t;
using functor::function_type_interface;
using functor::member_function_t;
using strings::ustring8;

struct listener {
    virtual ~listener() = default;
    virtual void hear(ustring8 const& text) { heard += text; }
    void ignore(ustring8 const&) {}
    std::size_t length() const { return heard.size(); }
    std::string heard;
};
struct loud_listener : listener {
    void hear(ustring8 const& text) override { heard += text + "!"; }
};
using member = member_function_t<listener, void(ustring8 const&)>;

struct counted_target : function_type_interface<int(int)> {
    explicit counted_target(int& live) : alive(live) { ++alive; }
    counted_target(counted_target const& other) : function_type_interface(other), alive(other.alive) { ++alive; }
    ~counted_target() override { --alive; }
    int invoke(int n) override { return n + 1; }
    bool do_equal(function_type_interface const&) const override { return true; }
    counted_target* do_clone() const override { return new counted_target(*this); }
    int& alive;
};

int twice(int n) { return 2 * n; }
int thrice(int n) { return 3 * n; }

TEST(MemberFunction, InvokesClonesAndCompares) {
    listener a;
    loud_listener b;
    member on_a(&a, &listener::hear), on_b(&b, &listener::hear);
    on_a.invoke("x");
    on_b.invoke("y");
    EXPECT_EQ("x", a.heard);
    EXPECT_EQ("y!", b.heard) << "virtual members dispatch through the object";

    std::unique_ptr<function_type_interface<void(ustring8 const&)>> const clone(on_a.do_clone());
    clone->invoke("z");
    EXPECT_EQ("xz", a.heard);

    EXPECT_TRUE(on_a.do_equal(*clone));
    EXPECT_FALSE(on_a.do_equal(on_b));
    EXPECT_FALSE(on_a.do_equal(member(&a, &listener::ignore)));
    EXPECT_TRUE(member(&a, nullptr).do_equal(member(&b, nullptr)));
    EXPECT_FALSE(on_b.do_equal(member_function_t<loud_listener, void(ustring8 const&)>(&b, &loud_listener::hear)));

    member_function_t<listener const, std::size_t()> length(&a, &listener::length);
    EXPECT_EQ(2u, length.invoke());
}

TEST(Delegate, OwnsItsTargetAndClonesItForCopies) {
    int alive = 0;
    {
        delegate_t<int(int)> original(new counted_target(alive));
        delegate_t<int(int)> copy(original), assigned;
        assigned = copy;
        EXPECT_EQ(3, alive);
        original = delegate_t<int(int)>();
        EXPECT_EQ(2, alive);
        EXPECT_EQ(5, copy.invoke(4)) << "a clone survives its origin";
        EXPECT_TRUE(copy == assigned);
        EXPECT_FALSE(copy == original);
        EXPECT_TRUE(original == delegate_t<int(int)>());
        delegate_t<int(int)> const moved(std::move(copy));
        EXPECT_EQ(2, alive);
        EXPECT_FALSE(copy);
        EXPECT_EQ(6, moved(5));
    }
    EXPECT_EQ(0, alive);
}

TEST(Delegate, UnboundCallsNothing) {
    delegate_t<void(ustring8 const&)>().invoke("text");
    EXPECT_EQ(0, delegate_t<int(int)>().invoke(7));
    EXPECT_EQ("", delegate_t<std::string()>().invoke());
    int (*null)(int) = nullptr;
    EXPECT_FALSE(delegate_t<int(int)>(null));
    EXPECT_FALSE(delegate_t<int(int)>(static_cast<function_type_interface<int(int)>*>(nullptr)));
}

TEST(Delegate, BindsFreeFunctionsAndLambdas) {
    delegate_t<int(int)> const free(twice);
    EXPECT_EQ(14, free.invoke(7));
    EXPECT_TRUE(free == delegate_t<int(int)>(&twice));
    EXPECT_FALSE(free == delegate_t<int(int)>(&thrice));

    int sum = 0;
    delegate_t<void(int)> const add([&sum](int n) { sum += n; });
    add.invoke(3);
    delegate_t<void(int)>(add).invoke(4);
    EXPECT_EQ(7, sum);

    delegate_t<void(int&)> const change([](int& n) { ++n; });
    change.invoke(sum);
    EXPECT_EQ(8, sum);

    static_assert(std::is_same_v<traits::function_traits<int(char, long)>::argument_type<1>, long>);
    static_assert(traits::function_traits<int(char, long)>::arity == 2);
    static_assert(std::is_empty_v<traits::function_traits<int(char, long)>>);
}

} // namespace
