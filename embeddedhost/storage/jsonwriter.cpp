#include "storage/jsonwriter.h"

#include "model/libraryitem.h"
#include "storage/jsonchildren.h"
#include "storage/jsonparser.h"

#include <string>
#include <string_view>
#include <utility>

namespace embeddedhost {

using nlohmann::ordered_json;

namespace {

constexpr int kIndentation = 2;
constexpr int kOnOneLine = -1;

/// Texts are written unescaped; bytes that are not UTF-8 become replacement characters.
std::string Dump(ordered_json const& value, int indentation)
{
    return value.dump(indentation, ' ', false, ordered_json::error_handler_t::replace);
}

/// The separators between the children of a container.
struct Layout
{
    std::string beforeFirst;
    std::string beforeOthers;
    std::string atEnd;

    /// For a container at this level, as the program writes it.
    explicit Layout(int level)
        : beforeFirst('\n' + std::string(std::size_t(level + 1) * kIndentation, ' '))
        , beforeOthers(',' + beforeFirst)
        , atEnd('\n' + std::string(std::size_t(level) * kIndentation, ' '))
    {}

    /// As it was written before; at least one child.
    explicit Layout(JsonParts const& parts)
        : beforeFirst(parts.all.front().separator)
        , beforeOthers(parts.all.size() > 1 ? std::string(parts.all[1].separator)
                                            : ',' + beforeFirst)
        , atEnd(parts.end)
    {}

    bool IsOnOneLine() const
    {
        return beforeOthers.find('\n') == std::string::npos;
    }
};

/// Writes values, copying the bytes of those that an older text has already.
class ContentWriter
{
public:
    void Write(ordered_json const& value, ordered_json const& old, std::string_view text, int level)
    {
        if (value == old)
            m_Content += text;
        else if (value.is_structured() && value.type() == old.type())
            WriteChildren(ListChildren(value), old, text, level);
        else
            WriteNew(value, level, kIndentation);
    }

    /// `old` has the same type as the container of the children.
    void WriteChildren(JsonChildren const& children, ordered_json const& old, std::string_view text,
                       int level)
    {
        OldChildren oldChildren(old, text);
        JsonParts const& parts = oldChildren.GetParts();
        Layout const layout = parts.all.empty() ? Layout(level) : Layout(parts);
        m_Content += text.front();
        for (JsonChild const& child : children) {
            std::size_t const part = oldChildren.Take(child.id);
            bool const isOld = part != OldChildren::kNone;
            // An old child keeps the blanks before it, except the one that was first: its separator
            // has no comma.
            if (&child == &children.front())
                m_Content += layout.beforeFirst;
            else
                m_Content += isOld && part > 0 ? parts.all[part].separator
                                               : std::string_view(layout.beforeOthers);
            if (isOld) {
                WriteOld(child, oldChildren.GetValue(part), parts.all[part], level + 1);
            } else {
                m_Content += old.is_object() ? Dump(child.id, kOnOneLine) + ": " : std::string();
                WriteNew(*child.value, level + 1, layout.IsOnOneLine() ? kOnOneLine : kIndentation);
            }
        }
        if (!children.empty())
            m_Content += layout.atEnd;
        else if (parts.all.empty())
            // It was empty before; the blanks between its brackets stay.
            m_Content += parts.end;
        m_Content += text.back();
    }

    /// Text that stays as it is.
    void Append(std::string_view text)
    {
        m_Content += text;
    }

    QByteArray GetContent() const
    {
        return QByteArray(m_Content.data(), int(m_Content.size()));
    }

private:
    void WriteOld(JsonChild const& child, ordered_json const& old, JsonPart const& part, int level)
    {
        m_Content += part.key;
        m_Content += part.colon;
        Write(*child.value, old, part.value, level);
    }

    /// All line breaks in dumped JSON are layout: those in texts are escaped.
    void WriteNew(ordered_json const& value, int level, int indentation)
    {
        std::string const margin(std::size_t(level) * kIndentation, ' ');
        for (char const character : Dump(value, indentation)) {
            m_Content += character;
            if (character == '\n')
                m_Content += margin;
        }
    }

    std::string m_Content;
};

/// The text on disk, with the blanks around it.
struct OldText
{
    /// Discarded values compare unequal to everything.
    ordered_json content = ordered_json(ordered_json::value_t::discarded);
    std::string text;
    std::string before;
    std::string after = "\n";
};

/// With `isArray`, a single object becomes an array of one.
OldText ReadOldText(QByteArray const& bytes, bool isArray)
{
    OldText old;
    if (ParsedText parsed = ParseJson(bytes); parsed.fault.isEmpty()) {
        std::string_view const whole(bytes.constData(), std::size_t(bytes.size()));
        std::string_view const text = TrimJson(whole);
        std::size_t const begin = std::size_t(text.data() - whole.data());
        old = {std::move(parsed.content), std::string(text), std::string(whole.substr(0, begin)),
               std::string(whole.substr(begin + text.size()))};
    }
    if (isArray && old.content.is_object()) {
        old.content = ordered_json::array({std::move(old.content)});
        old.text = "[\n  " + old.text + "\n]";
    } else if (isArray && !old.content.is_array()) {
        old.content = ordered_json::array();
        old.text = "[]";
    }
    return old;
}

/// Copies, so that items do not cache their objects: most of a large file are needed only here.
std::vector<ordered_json> CopyObjects(LibraryFile const& file)
{
    std::vector<ordered_json> objects;
    objects.reserve(file.entries.size());
    for (LibraryFile::Entry const& entry : file.entries)
        objects.push_back(entry.item ? entry.item->CopyObject() : entry.other);
    return objects;
}

} // namespace

QByteArray WriteJson(LibraryFile const& file, QByteArray const& oldBytes)
{
    std::vector<ordered_json> const copies = CopyObjects(file);
    JsonChildren objects;
    for (ordered_json const& copy : copies)
        objects.push_back(MakeEntry(copy));
    // More than one: another program had replaced the file's single object.
    bool const isArray = file.isArray || objects.size() != 1;
    OldText const old = ReadOldText(oldBytes, isArray);
    ContentWriter writer;
    writer.Append(old.before);
    if (isArray)
        writer.WriteChildren(objects, old.content, old.text, 0);
    else
        writer.Write(*objects.front().value, old.content, old.text, 0);
    writer.Append(old.after);
    return writer.GetContent();
}

} // namespace embeddedhost
