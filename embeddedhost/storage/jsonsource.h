#ifndef EMBEDDEDHOST_JSONSOURCE_H
#define EMBEDDEDHOST_JSONSOURCE_H

#include "storage/objectformat.h"

namespace embeddedhost {

/// Keeps valid JSON: an object, or an array.
KeptText KeepJson(QByteArray const& text);

} // namespace embeddedhost

#endif
