/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file types.h
 * What every public header of the MOX boot driver library needs: fixed-width integers, the export marks, and
 * a layout check that works in C11 and in C++.
 */
#ifndef MOXBOOT_TYPES_H
#define MOXBOOT_TYPES_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
#define MOXBOOT_BEGIN extern "C" {
#define MOXBOOT_END }
#define MOXBOOT_STATIC_ASSERT(condition, text) static_assert(condition, text)
#else
#define MOXBOOT_BEGIN
#define MOXBOOT_END
#define MOXBOOT_STATIC_ASSERT(condition, text) _Static_assert(condition, text)
#endif

/** Marks a function or variable of the library's binary interface. */
#define MOXBOOT_API __attribute__((visibility("default")))
/** Lets the compiler check a printf-like call: @p f is the position of the format, @p a of its first
 * argument. */
#define MOXBOOT_PRINTF(f, a) __attribute__((format(printf, f, a)))

#endif
