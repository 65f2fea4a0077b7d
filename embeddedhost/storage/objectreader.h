#ifndef EMBEDDEDHOST_OBJECTREADER_H
#define EMBEDDEDHOST_OBJECTREADER_H

#include <QString>

#include <nlohmann/json.hpp>

#include <functional>

namespace embeddedhost {

/// Called with the key of a fault and the reason.
typedef std::function<void(QString const& key, QString const& reason)> ObjectFault;

/// Checks the keys of an object of a library file. False when it makes no item: uid, kind or
/// name are missing or wrong, or a text is too long. Other keys that are wrong are only reported.
bool CheckObject(nlohmann::ordered_json const& object, ObjectFault const& fault);

} // namespace embeddedhost

#endif
