#include "graphclipboard.h"

#include <graphjson.h>
#include <graphwriter.h>

#include <QByteArray>
#include <QMimeData>
#include <QString>

namespace {

QString const kNodesMimeType = QStringLiteral("application/x-nodeeditor-nodes+json");

} // namespace

QMimeData* MakeClipboardData(GraphBody const& nodes)
{
    nlohmann::ordered_json document = nlohmann::ordered_json::object();
    embeddedhost::WriteGraphBody(nodes, document);
    QByteArray const text = QByteArray::fromStdString(document.dump(2));
    QMimeData* const data = new QMimeData;
    data->setData(kNodesMimeType, text);
    data->setText(QString::fromUtf8(text));
    return data;
}

GraphBody ReadClipboardData(QMimeData const* data)
{
    if (!data || !data->hasFormat(kNodesMimeType))
        return GraphBody();
    auto const document =
        nlohmann::ordered_json::parse(data->data(kNodesMimeType).toStdString(), nullptr, false);
    if (!document.is_object())
        return GraphBody();
    return embeddedhost::ReadGraphBody(document, [](std::string const&, std::string const&) {
        // Another program's mistake; what is usable is pasted.
    });
}
