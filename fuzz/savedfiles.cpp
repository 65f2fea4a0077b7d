#include "savedfiles.h"

#include "filevalues.h"
#include "require.h"

#include <algorithm>

namespace {

typedef std::map<std::string, std::string> Members;

/// Without the entries that were expected to come or go.
std::vector<EntryValues> GetStaying(FileValues const& values, std::set<std::string> const& objects)
{
    std::vector<EntryValues> staying;
    std::copy_if(values.entries.begin(), values.entries.end(), std::back_inserter(staying),
                 [&](EntryValues const& entry) { return !objects.count(entry.uid); });
    return staying;
}

} // namespace

void ExpectedChanges::AddKeys(std::string const& uid, std::set<std::string> const& keys)
{
    m_Keys[uid].insert(keys.begin(), keys.end());
}

void ExpectedChanges::AddObject(std::string const& uid)
{
    m_Objects.insert(uid);
}

void ExpectedChanges::AddObjectsOf(QByteArray const& content)
{
    auto const values = ReadFileValues(content);
    if (!values)
        return;
    for (EntryValues const& entry : values->entries)
        AddObject(entry.uid);
}

void ExpectedChanges::AddEverything()
{
    m_IsEverything = true;
}

bool ExpectedChanges::IsExpected(std::string const& uid, std::string const& key) const
{
    auto const keys = m_Keys.find(uid);
    return keys != m_Keys.end() && keys->second.count(key);
}

void ExpectedChanges::Check(FuzzFolder::Files const& before, FuzzFolder::Files const& after) const
{
    if (m_IsEverything)
        return;
    for (auto file = before.begin(); file != before.end(); ++file) {
        std::string const path = file.key().toStdString();
        if (after.contains(file.key()))
            CheckFile(path, file->content, after[file.key()].content);
        else
            CheckFile(path, file->content, "[]");
    }
    for (auto file = after.begin(); file != after.end(); ++file) {
        if (!before.contains(file.key()))
            CheckFile(file.key().toStdString(), "[]", file->content);
    }
}

void ExpectedChanges::CheckFile(std::string const& path, QByteArray const& before,
                                QByteArray const& after) const
{
    if (before == after)
        return;
    auto const valuesBefore = ReadFileValues(before);
    auto const valuesAfter = ReadFileValues(after);
    Require(valuesBefore.has_value(), path + " was replaced only if it could be read");
    Require(valuesAfter.has_value(), path + " can be read after the save");
    auto const entriesBefore = GetStaying(*valuesBefore, m_Objects);
    auto const entriesAfter = GetStaying(*valuesAfter, m_Objects);
    Require(entriesBefore.size() == entriesAfter.size(), path + " keeps its objects");
    for (std::size_t i = 0; i < entriesBefore.size(); ++i) {
        EntryValues const& entry = entriesBefore[i];
        if (entry.hasTwinKeys)
            continue;
        Members const from(entry.members.begin(), entry.members.end());
        Members const to(entriesAfter[i].members.begin(), entriesAfter[i].members.end());
        for (Members const* const members : {&from, &to}) {
            for (auto const& [key, value] : *members) {
                bool const isSame = from.count(key) && to.count(key) && from.at(key) == to.at(key);
                Require(isSame || IsExpected(entry.uid, key),
                        path + ", " + entry.uid + ": \"" + key + "\" keeps its value");
            }
        }
    }
}
