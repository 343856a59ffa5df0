// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Mix-ins that give a class the ability to be counted, cloned or created.
//
// A class that rc_pointer<T> is to hold derives from reference_count_pointer_ability<T>; the count
// then lives inside the object. Whoever makes such an object with `new` sets `heap_allocated`
// before handing it to a pointer (memory::pointers::make_rc does both); an object without the mark,
// such as a local or a static, is counted but never deleted.
//
// The count is a plain integer: an object and all its pointers belong to one thread at a time.
#pragma once

namespace ZOLT_2_18::generic::abilities {

/// Remembers whether the object was made with `new` and may be deleted by its last pointer.
class __attribute__((visibility("default"))) alloc_detection_ability {
public:
    alloc_detection_ability() noexcept = default;
    /// A copy is a new object, whose own maker decides: it starts unmarked.
    alloc_detection_ability(alloc_detection_ability const&) noexcept {}
    /// Assignment changes an object's value, not how it was made.
    alloc_detection_ability& operator=(alloc_detection_ability const&) noexcept { return *this; }
    virtual ~alloc_detection_ability();

    bool heap_allocated = false; ///< made with `new`; kept by copies and assignments of others
};

/// The count of pointers that hold the object. A copy starts with its own count of 0; assignment
/// leaves the target's count alone.
class __attribute__((visibility("default"))) reference_count_pointer_ability_b : public alloc_detection_ability {
public:
    reference_count_pointer_ability_b() noexcept = default;
    reference_count_pointer_ability_b(reference_count_pointer_ability_b const& other) noexcept
        : alloc_detection_ability(other) {}
    reference_count_pointer_ability_b& operator=(reference_count_pointer_ability_b const&) noexcept { return *this; }
    ~reference_count_pointer_ability_b() override;

    unsigned int reference_count = 0; ///< pointers that hold the object
};

/// Typed mark of the classes that rc_pointer<T> holds.
template <typename T>
class __attribute__((visibility("default"))) reference_count_pointer_ability
    : public reference_count_pointer_ability_b {};

/// Marks an interface whose objects can copy themselves.
class __attribute__((visibility("default"))) clone_ability {
public:
    clone_ability() noexcept = default;
    clone_ability(clone_ability const&) noexcept = default;
    clone_ability& operator=(clone_ability const&) noexcept = default;
    virtual ~clone_ability();
};

/// Marks an interface whose objects can make new ones of their kind.
class __attribute__((visibility("default"))) create_ability {
public:
    create_ability() noexcept = default;
    create_ability(create_ability const&) noexcept = default;
    create_ability& operator=(create_ability const&) noexcept = default;
    virtual ~create_ability();
};

} // namespace ZOLT_2_18::generic::abilities
