#include "storage/jsontreebuilder.h"

#include "storage/faults.h"

#include <algorithm>

namespace embeddedhost {

using nlohmann::ordered_json;

namespace {

/// The reason in the parser's message, without the position.
QString GetReason(ordered_json::exception const& error)
{
    QString const text = QString::fromUtf8(error.what());
    auto const column = text.indexOf(QLatin1String(", column "));
    auto const end = text.indexOf(column < 0 ? QLatin1String("] ") : QLatin1String(": "),
                                  std::max<decltype(column)>(column, 0));
    return QStringLiteral("this is not JSON: %1.").arg(Shorten(text.mid(end + 2)));
}

} // namespace

JsonTreeBuilder::JsonTreeBuilder(int maxDepth)
    : m_MaxDepth(maxDepth)
{}

bool JsonTreeBuilder::null()
{
    return Add(nullptr);
}

bool JsonTreeBuilder::boolean(bool value)
{
    return Add(value);
}

bool JsonTreeBuilder::number_integer(ordered_json::number_integer_t value)
{
    return Add(value);
}

bool JsonTreeBuilder::number_unsigned(ordered_json::number_unsigned_t value)
{
    return Add(value);
}

bool JsonTreeBuilder::number_float(ordered_json::number_float_t value, std::string const& /*text*/)
{
    return Add(value);
}

bool JsonTreeBuilder::string(std::string const& value)
{
    return Add(value);
}

bool JsonTreeBuilder::binary(ordered_json::binary_t const& /*value*/)
{
    return false;
}

bool JsonTreeBuilder::start_object(std::size_t /*size*/)
{
    return Open(false);
}

bool JsonTreeBuilder::key(std::string const& key)
{
    bool const isNew = GetInnermost().OpenMember(key);
    // Further ones would not be reported, and a crafted file could fill the memory with them.
    if (!isNew && m_RepeatedKeys.size() < kMaxReportedFaults)
        m_RepeatedKeys.push_back(GetPath());
    return true;
}

bool JsonTreeBuilder::end_object()
{
    return Close();
}

bool JsonTreeBuilder::start_array(std::size_t /*size*/)
{
    return Open(true);
}

bool JsonTreeBuilder::end_array()
{
    return Close();
}

bool JsonTreeBuilder::parse_error(std::size_t position, std::string const& /*token*/,
                                  ordered_json::exception const& error)
{
    // The parser counts bytes from 1.
    m_FaultPosition = position > 0 ? position - 1 : 0;
    m_Fault = GetReason(error);
    return false;
}

ordered_json JsonTreeBuilder::TakeTree()
{
    return std::move(m_Tree);
}

std::vector<QString> const& JsonTreeBuilder::GetRepeatedKeys() const
{
    return m_RepeatedKeys;
}

bool JsonTreeBuilder::IsTooDeep() const
{
    return m_Depth > m_MaxDepth;
}

int JsonTreeBuilder::GetMaxDepth() const
{
    return m_MaxDepth;
}

QString const& JsonTreeBuilder::GetFault() const
{
    return m_Fault;
}

std::size_t JsonTreeBuilder::GetFaultPosition() const
{
    return m_FaultPosition;
}

JsonContainer& JsonTreeBuilder::GetInnermost()
{
    return m_Levels[std::size_t(m_Depth - 1)];
}

bool JsonTreeBuilder::Add(ordered_json value)
{
    if (m_Depth == 0)
        m_Tree = std::move(value);
    else
        GetInnermost().Add(std::move(value));
    return true;
}

bool JsonTreeBuilder::Open(bool isArray)
{
    bool const isAroundEverything = m_Depth == 0 && isArray;
    if (isAroundEverything)
        ++m_MaxDepth;
    if (++m_Depth > m_MaxDepth)
        return false;
    if (m_Levels.size() < std::size_t(m_Depth))
        m_Levels.emplace_back();
    GetInnermost().Open(isArray);
    return true;
}

bool JsonTreeBuilder::Close()
{
    ordered_json value = GetInnermost().Close();
    --m_Depth;
    return Add(std::move(value));
}

/// The path of the current member: the number of its object, and the keys that lead to it.
QString JsonTreeBuilder::GetPath() const
{
    QString object;
    QString path;
    for (int level = 0; level < m_Depth; ++level) {
        JsonContainer const& container = m_Levels[std::size_t(level)];
        if (!container.IsArray())
            path += (path.isEmpty() ? QString() : QStringLiteral("."))
                    + Shorten(QString::fromStdString(container.GetKey()));
        else if (level == 0)
            object = QStringLiteral("object %1, ").arg(container.GetPosition() + 1);
        else
            path += QStringLiteral("[%1]").arg(container.GetPosition());
    }
    return object + QStringLiteral("key \"%1\"").arg(path);
}

} // namespace embeddedhost
