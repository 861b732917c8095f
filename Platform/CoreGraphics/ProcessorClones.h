#pragma once

// MIVORA_CLONES before a function makes it exist twice on x86: for its oldest machines and for those with AVX2, chosen at load.
// For loops over pixels, which must give the same integers either way. Sanitizers run before the choice is made, so there it
// does nothing.
#define MIVORA_CLONES

#if defined(__x86_64__) && defined(__ELF__)
#if defined(__clang__)
#if __clang_major__ >= 14 && !__has_feature(address_sanitizer) && !__has_feature(thread_sanitizer)
#define MIVORA_HAS_CLONES
#endif
#elif !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define MIVORA_HAS_CLONES
#endif
#endif

#ifdef MIVORA_HAS_CLONES
#undef MIVORA_CLONES
#define MIVORA_CLONES __attribute__((target_clones("avx2", "default")))
#endif
