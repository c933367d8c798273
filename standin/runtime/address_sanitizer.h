// Whether this build watches memory with the address sanitizer; gcc and clang tell it differently.
#ifndef ZRB_STANDIN_RUNTIME_ADDRESS_SANITIZER_H
#define ZRB_STANDIN_RUNTIME_ADDRESS_SANITIZER_H

#if defined(__SANITIZE_ADDRESS__)
#define ZRB_HAS_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZRB_HAS_ADDRESS_SANITIZER 1
#endif
#endif

#endif
