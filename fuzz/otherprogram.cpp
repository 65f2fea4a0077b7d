#include "otherprogram.h"

#include "filevalues.h"

#include <array>

namespace {

std::array<char const*, 8> const kFiles = {
    "project/0.json", "project/1.json", "project/below/2.json", "shared/3.json",
    "shared/4.json",  "factory/5.json", "factory/6.json",       "library.json"};

bool IsManifest(Step const& step)
{
    return OtherProgram::GetFile(step) == QLatin1String(kFiles.back());
}

} // namespace

OtherProgram::OtherProgram(FuzzFolder& folder)
    : m_Folder(folder)
{}

QString OtherProgram::GetFile(Step const& step)
{
    return QString::fromLatin1(kFiles[std::size_t(step.number) % kFiles.size()]);
}

void OtherProgram::Do(Step const& step)
{
    bool isDone = true;
    if (step.verb == "file")
        Write(step);
    else if (step.verb == "erase")
        m_Folder.Remove(GetFile(step));
    else if (step.verb == "link")
        m_Folder.Link(GetFile(step));
    else if (step.verb == "pipe")
        m_Folder.MakePipe(GetFile(step));
    else
        isDone = false;
    m_HasOtherManifest |= isDone && IsManifest(step);
    m_HasUnreadable |= step.verb == "link" || step.verb == "pipe";
}

void OtherProgram::Write(Step const& step)
{
    NoteUids(step);
    m_Folder.Write(GetFile(step), step.text);
}

void OtherProgram::NoteUids(Step const& step)
{
    if (IsManifest(step))
        return;
    auto const values = ReadFileValues(step.text);
    m_HasUnreadable |= !values;
    std::set<std::string> inFile;
    for (EntryValues const& entry : values ? values->entries : std::vector<EntryValues>()) {
        auto const [found, isNew] = m_FileOfUid.emplace(entry.uid, GetFile(step));
        if (!inFile.insert(entry.uid).second || found->second != GetFile(step))
            m_AmbiguousUids.insert(entry.uid);
    }
}

void OtherProgram::NoteOpened()
{
    m_HasOtherManifest = false;
}

bool OtherProgram::HasOtherManifest() const
{
    return m_HasOtherManifest;
}

bool OtherProgram::HasUnreadable() const
{
    return m_HasUnreadable;
}

std::set<std::string> const& OtherProgram::GetAmbiguousUids() const
{
    return m_AmbiguousUids;
}
