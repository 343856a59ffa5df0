# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
set width 0
set confirm off
set startup-with-shell off
break look_around
run
up
set trace-commands on
print utf8
print utf16
print utf32
print empty
print -elements 5 -- long_utf8
print -elements 5 -- long_utf16
set host-charset ASCII
set target-charset ASCII
print utf16
set host-charset UTF-8
set target-charset UTF-8
print values
print -elements 2 -- values
print no_values
print damaged_values
print number
print wide
print nothing
print named
print unnamed
print owner
print borrower
print nobody
print share
print root
print tree
print *root.m_object
print -max-depth 2 -- tree
print -elements 3 -- tree
print -elements 3 -- keys
python entries = list(gdb.default_visualizer(gdb.parse_and_eval("keys")).children())
python print(len(entries), entries == sorted(entries), entries[0][0], entries[-1][0])
print no_keys
print single
print damaged
print moment
print leap_day
print no_day
print midnight
print days
print day
print film
print past
set $copy = utf16
print $copy
set $copy = moment
print $copy
print texts.from_zeros
print texts.from_ones
print variants
print lists
print pointers.from_zeros
print pointers.from_ones
print shares.from_counting
print trees
print moments.from_zeros
print moments.from_ones
print durations.from_ones
set print elements unlimited
set print max-depth unlimited
print texts.from_circle
print lists
print trees
print damaged
