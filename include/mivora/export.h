// Symbol visibility of the Mivora library. Included by <mivora/IirProcess.h>;
// there is no need to include it directly.
//
// The library is compiled with hidden visibility, so a shared build exports
// only what is marked MIVORA_API: the public member functions, never the
// private ones. Nothing needs defining to use either build with GCC or Clang.
// On Windows a shared build defines MIVORA_SHARED for its users (the CMake
// package and mivora.pc both pass it on) so that the members are imported
// from the DLL; MIVORA_BUILDING is defined only while the library
// itself is compiled. Define MIVORA_API yourself to override all of this.
#ifndef MIVORA_EXPORT_H
#define MIVORA_EXPORT_H

#ifndef MIVORA_API
#  if defined(_WIN32) || defined(__CYGWIN__)
#    if defined(MIVORA_BUILDING)
#      define MIVORA_API __declspec(dllexport)
#    elif defined(MIVORA_SHARED)
#      define MIVORA_API __declspec(dllimport)
#    else
#      define MIVORA_API
#    endif
#  elif defined(__GNUC__)
#    define MIVORA_API __attribute__((visibility("default")))
#  else
#    define MIVORA_API
#  endif
#endif

#endif  // MIVORA_EXPORT_H
