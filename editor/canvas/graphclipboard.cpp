#include "graphclipboard.h"

#include <embeddedhost/model/graphjson.h>
#include <embeddedhost/model/graphwriter.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QMimeData>
#include <QString>

#include <algorithm>

using namespace embeddedhost;

namespace {

QString const kNodesMimeType = QStringLiteral("application/x-nodeeditor-nodes+json");

/// Some 100,000 nodes.
int const kMostBytes = 16 << 20;
/// Nodes need four levels. The document is walked recursively: this bounds the stack.
int const kMostLevels = 100;

/// Counts brackets outside of texts.
int CountLevels(std::string const& json)
{
    int level = 0;
    int most = 0;
    bool isText = false;
    for (std::size_t at = 0; at < json.size(); ++at) {
        char const letter = json[at];
        if (letter == '"')
            isText = !isText;
        else if (isText && letter == '\\')
            ++at;
        else if (!isText && (letter == '[' || letter == '{'))
            most = std::max(most, ++level);
        else if (!isText && (letter == ']' || letter == '}'))
            --level;
    }
    return most;
}

QString Translate(char const* text)
{
    return QCoreApplication::translate("GraphClipboard", text);
}

/// Null with a reason if the bytes are not a document as the editor writes it.
nlohmann::ordered_json ParseNodes(QByteArray const& bytes, QString* reason)
{
    std::string const text = bytes.size() > kMostBytes ? std::string() : bytes.toStdString();
    if (bytes.size() > kMostBytes)
        *reason = Translate("there is more than 16 MB of it");
    else if (CountLevels(text) > kMostLevels)
        *reason = Translate("it is nested deeper than 100 levels");
    else if (auto document = nlohmann::ordered_json::parse(text, nullptr, false);
             document.is_object())
        return document;
    else
        *reason = Translate("it is no JSON object");
    return nullptr;
}

} // namespace

QMimeData* MakeClipboardData(GraphBody const& nodes)
{
    nlohmann::ordered_json document = nlohmann::ordered_json::object();
    embeddedhost::WriteGraphBody(nodes, document);
    QByteArray const text = QByteArray::fromStdString(document.dump(2));
    if (text.size() > kMostBytes)
        return nullptr;
    QMimeData* const data = new QMimeData;
    data->setData(kNodesMimeType, text);
    // For text editors and mails; pasting here goes by the other format alone.
    data->setText(QString::fromUtf8(text));
    return data;
}

bool HasClipboardNodes(QMimeData const* data)
{
    return data && data->hasFormat(kNodesMimeType);
}

GraphBody ReadClipboardData(QMimeData const* data, QString* reason)
{
    QString unwanted;
    reason = reason ? reason : &unwanted;
    if (!HasClipboardNodes(data)) {
        *reason = Translate("it holds something else");
        return GraphBody();
    }
    nlohmann::ordered_json const document = ParseNodes(data->data(kNodesMimeType), reason);
    if (document.is_null())
        return GraphBody();
    GraphBody body = embeddedhost::ReadGraphBody(document, [](auto const&, auto const&) {
        // Faulty entries of another program are skipped and the rest is pasted.
    });
    if (body.nodes.empty())
        *reason = Translate("none of them is complete");
    return body;
}
