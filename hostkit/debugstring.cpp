// In a file of its own: a host that writes debug texts elsewhere defines the function itself.

#include <qorm.h>

#include <QtGlobal>

namespace qorm {

void PrintDebugString(std::string const& text)
{
    qDebug("%s", text.c_str());
}

} // namespace qorm
