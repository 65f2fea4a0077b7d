#include <qorm.h>

#include <QtGlobal>

namespace qorm {

void PrintDebugString(std::string const& text)
{
    qDebug("%s", text.c_str());
}

} // namespace qorm
