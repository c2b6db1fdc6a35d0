#include <windows.h>

#include <cstdlib>

/// At process attach the loader's lock is held, so this loads no other library and calls no code of
/// Excel's. What needs either (the callback, the version resource, the language) is found when it
/// is first needed, at the latest by xlAutoOpen. The fixed seed keeps the C library's generator
/// repeatable.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) std::srand(2);
  return TRUE;
}
