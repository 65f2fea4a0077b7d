#ifndef EMBEDDEDHOST_EMBEDDEDHOST_EXPORT_H
#define EMBEDDEDHOST_EMBEDDEDHOST_EXPORT_H

#include <QtGlobal>

// Marks what a shared library of the embedded host gives to programs; everything else stays hidden
// in it.
#if !defined(EMBEDDEDHOST_SHARED)
#define EMBEDDEDHOST_EXPORT
#elif defined(embeddedhost_EXPORTS)
#define EMBEDDEDHOST_EXPORT Q_DECL_EXPORT
#else
#define EMBEDDEDHOST_EXPORT Q_DECL_IMPORT
#endif

#endif
