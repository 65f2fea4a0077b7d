#ifndef PALETTE_PALETTE_EXPORT_H
#define PALETTE_PALETTE_EXPORT_H

#include <QtGlobal>

// Marks what a shared library of the palette gives to programs; everything else stays hidden in it.
#if !defined(PALETTE_SHARED)
#define PALETTE_EXPORT
#elif defined(palette_EXPORTS)
#define PALETTE_EXPORT Q_DECL_EXPORT
#else
#define PALETTE_EXPORT Q_DECL_IMPORT
#endif

#endif
