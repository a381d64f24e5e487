// How a loadable module declares what it exports and what it keeps to itself.
#pragma once

#ifdef _WIN32
// A module exports what it marks, and nothing else.
#define KVA_EXPORTED __declspec(dllexport)
#define KVA_INTERNAL
#else
// Shared libraries export what their version script lists. They share the variables of other modules unless
// those are internal.
#define KVA_EXPORTED [[gnu::visibility("default")]]
#define KVA_INTERNAL [[gnu::visibility("hidden")]]
#endif
