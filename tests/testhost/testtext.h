#ifndef NODEBROWSER_TESTS_TESTTEXT_H
#define NODEBROWSER_TESTS_TESTTEXT_H

// How the test host writes arguments down.

#include "qorm.h"

#include <QString>

inline QString Quoted(char const* text)
{
    return text ? "'" + QString::fromLatin1(text) + "'" : QString("null");
}

inline QString Quoted(std::string const& text)
{
    return Quoted(text.c_str());
}

inline QString TextOf(bool value)
{
    return value ? "true" : "false";
}

inline QString TextOf(qorm::QormHandle<qorm::IDbObject> const& object)
{
    return object.IsValid() ? QString::fromLatin1(object.GetDbObjectId().GetStr()) : "-";
}

#endif
