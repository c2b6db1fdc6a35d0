#pragma once
// Marks a function that the add-in exports by its plain name.

#ifdef _WIN32
#define ZAV_EXPORT extern "C" __declspec(dllexport)
#else
#define ZAV_EXPORT extern "C" __attribute__((visibility("default")))
#endif
