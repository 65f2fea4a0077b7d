#ifndef EMBEDDEDHOST_JSONTREEBUILDER_H
#define EMBEDDEDHOST_JSONTREEBUILDER_H

#include "storage/jsoncontainer.h"

#include <QString>

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace embeddedhost {

/// Builds a tree from the events of the SAX parser, up to a depth. The parser prescribes the names
/// of the first functions, and stops when one returns false.
class JsonTreeBuilder
{
public:
    /// An array around everything does not count as a level.
    explicit JsonTreeBuilder(int maxDepth);

    bool null();
    bool boolean(bool value);
    bool number_integer(nlohmann::ordered_json::number_integer_t value);
    bool number_unsigned(nlohmann::ordered_json::number_unsigned_t value);
    bool number_float(nlohmann::ordered_json::number_float_t value, std::string const& text);
    bool string(std::string const& value);
    /// Never called for a text.
    bool binary(nlohmann::ordered_json::binary_t const& value);
    bool start_object(std::size_t size);
    bool key(std::string const& key);
    bool end_object();
    bool start_array(std::size_t size);
    bool end_array();
    bool parse_error(std::size_t position, std::string const& token,
                     nlohmann::ordered_json::exception const& error);

    nlohmann::ordered_json TakeTree();
    /// The places of repeated keys, `object 3, key "tags.colour"`; the first hundred of them.
    std::vector<QString> const& GetRepeatedKeys() const;

    /// It was stopped by a bracket that opens more levels than GetMaxDepth.
    bool IsTooDeep() const;
    int GetMaxDepth() const;
    /// Another reason why it was stopped, a sentence, and its position in the text.
    QString const& GetFault() const;
    std::size_t GetFaultPosition() const;

private:
    JsonContainer& GetInnermost();
    bool Add(nlohmann::ordered_json value);
    bool Open(bool isArray);
    bool Close();
    QString GetPath() const;

    int m_MaxDepth;
    /// The number of open containers.
    int m_Depth = 0;
    std::vector<JsonContainer> m_Levels;
    nlohmann::ordered_json m_Tree;
    std::vector<QString> m_RepeatedKeys;
    QString m_Fault;
    std::size_t m_FaultPosition = 0;
};

} // namespace embeddedhost

#endif
