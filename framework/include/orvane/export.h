// Export macro for the Orvane framework library.
//
// The library is built with hidden symbol visibility; only declarations marked
// ORVANE_API form its binary interface. Class templates and inline helpers in
// the public headers need no mark.
#pragma once

#if defined(_WIN32)
#  if defined(ORVANE_BUILDING_LIBRARY)
#    define ORVANE_API __declspec(dllexport)
#  else
#    define ORVANE_API __declspec(dllimport)
#  endif
#else
#  define ORVANE_API __attribute__((visibility("default")))
#endif
