// SPDX-License-Identifier: MIT
// Several builds of a hot loop, the best one for the processor chosen at run time. All give the
// same bits: without contraction a wider register changes nothing.
#pragma once

#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && !defined(VELMORA_SANITIZE)
#define VELMORA_PER_PROCESSOR __attribute__((target_clones("avx512f", "avx2", "default")))
#else
#define VELMORA_PER_PROCESSOR
#endif
