// How a loadable module declares its exported symbols and its private objects.
#pragma once

#ifdef _WIN32
// A module exports only the symbols that it marks.
#define KVA_EXPORTED __declspec(dllexport)
#define KVA_INTERNAL
#else
// Shared libraries export the symbols that their version script lists. They share the variables of other
// modules unless those are internal.
#define KVA_EXPORTED [[gnu::visibility("default")]]
#define KVA_INTERNAL [[gnu::visibility("hidden")]]
#endif
