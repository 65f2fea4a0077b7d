#ifndef NODEBROWSER_NODEBROWSER_EXPORT_H
#define NODEBROWSER_NODEBROWSER_EXPORT_H

#include <QtGlobal>

// Marks what a shared library of the panel gives to hosts; everything else stays hidden in it.
// Written by hand, as the panel is also built by hosts that have no CMake.
#if !defined(NODEBROWSER_SHARED)
#define NODEBROWSER_EXPORT
#elif defined(nodebrowser_EXPORTS)
#define NODEBROWSER_EXPORT Q_DECL_EXPORT
#else
#define NODEBROWSER_EXPORT Q_DECL_IMPORT
#endif

#endif
