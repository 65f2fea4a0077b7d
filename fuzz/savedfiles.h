#ifndef FUZZ_SAVEDFILES_H
#define FUZZ_SAVEDFILES_H

#include "fuzzfolder.h"

#include <map>
#include <set>
#include <string>

/// The changes made to a library's objects, which are the only ones a save may write.
class ExpectedChanges
{
public:
    /// The keys of the object with the folded uid were changed.
    void AddKeys(std::string const& uid, std::set<std::string> const& keys);
    /// The object may become another one, come or go.
    void AddObject(std::string const& uid);
    void AddObjectsOf(QByteArray const& content);
    /// Any file may be written: it was asked for.
    void AddEverything();

    /// A save made one of the other: nothing else is different.
    void Check(FuzzFolder::Files const& before, FuzzFolder::Files const& after) const;

private:
    void CheckFile(std::string const& path, QByteArray const& before,
                   QByteArray const& after) const;
    bool IsExpected(std::string const& uid, std::string const& key) const;

    std::map<std::string, std::set<std::string>> m_Keys;
    std::set<std::string> m_Objects;
    bool m_IsEverything = false;
};

#endif
