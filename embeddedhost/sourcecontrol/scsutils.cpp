#include "base/text8.h"
#include "model/library.h"
#include "sourcecontrol/sourcecontrolservice.h"
#include "sourcecontrol/statemarks.h"

#include <sourcecontrol.h>

#include <QDir>

using namespace embeddedhost;

namespace ScsUtils {

bool IsFileVersionControlActive()
{
    CSourceControlService const* const service = CSourceControlService::GetInstance();
    return service && service->IsActive();
}

QPixmap getAssetStateIcon(QPixmap& base, unsigned int state, bool active, bool plain)
{
    // The contract wants the base for kNoState, which items have that take no part in source
    // control: the strip of the others would shift their icon.
    if (!active || state == unsigned(kNoState) || base.isNull())
        return base;
    QPixmap icon = plain ? AddStateStrip(base) : base;
    PaintStateMarks(icon, state);
    return icon;
}

QString GetToolTip(qorm::QormHandle<qorm::IDbObject> object, QString const& icon)
{
    auto const* const database = CObjectDatabase::From(object.GetInstance());
    if (!database || !database->Exists(object.GetCacheIndex()))
        return QString();
    QString const name = FromText8(database->GetName(object.GetCacheIndex()));
    CLibraryItem const* const item = database->GetItem(object.GetCacheIndex());
    if (!item || database->GetLibrary()->IsInMemory())
        return BuildPlainToolTip(icon, name, QString());

    QString const file = item->GetFile().path;
    QString const path = QDir(database->GetLibrary()->GetFolder()).relativeFilePath(file);
    CSourceControlService* const service = CSourceControlService::GetInstance();
    if (!service || !service->IsActive() || !service->GetProperties().IsEnabled())
        return BuildPlainToolTip(icon, name, path);
    return BuildToolTip(icon, name, path, service->FindFacts(file));
}

} // namespace ScsUtils
