#ifndef EMBEDDEDHOST_JSONPARSER_H
#define EMBEDDEDHOST_JSONPARSER_H

#include "storage/parsedtext.h"

#include <QByteArray>

namespace embeddedhost {

/// `levelsAround` is the number of levels that the text has around each object.
ParsedText ParseJson(QByteArray const& text, int levelsAround = 0);

} // namespace embeddedhost

#endif
