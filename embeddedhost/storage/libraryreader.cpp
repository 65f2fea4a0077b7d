#include "storage/libraryreader.h"

#include "model/library.h"
#include "model/libraryitem.h"
#include "storage/filedigest.h"
#include "storage/fileobjects.h"
#include "storage/folderscan.h"
#include "storage/manifest.h"
#include "storage/objectformat.h"
#include "storage/parsedfile.h"

#include <QFileInfo>

#include <algorithm>
#include <map>

namespace embeddedhost {

using nlohmann::ordered_json;

namespace {

/// Fills a library from its files.
class LibraryReader
{
public:
    LibraryReader(CLibrary& library, FaultReporter const& faults)
        : m_Library(library)
        , m_Faults(faults)
    {}

    void AddSources(std::vector<CDataSource::Description> const& descriptions)
    {
        for (CDataSource::Description const& description : descriptions) {
            DataSourcePtr const source(new CDataSource(description));
            m_Library.AddSource(source);
            m_Library.GetDatabase().AddResource(source);
            if (!description.component.empty())
                m_Library.GetDatabase().AddComponent(source, description.component);
        }
    }

    void ListFiles()
    {
        for (DataSourcePtr const& source : m_Library.GetSources()) {
            auto const paths =
                ListObjectFiles(m_Library.GetFolder(), source->GetDescription().folder, m_Faults);
            for (QString const& path : paths)
                m_Files.push_back({path, source});
        }
    }

    /// False when it was stopped.
    bool ReadFiles(ReadProgress const& progress)
    {
        int const total = int(m_Files.size());
        for (int done = 0; done < total; ++done) {
            if (progress && !progress(done, total))
                return false;
            ReadFile(m_Files[std::size_t(done)]);
        }
        return !progress || progress(total, total);
    }

    /// Reports references to missing items, since the referring item may be hidden by them.
    void CheckReferences()
    {
        // In the order of the table of contents.
        std::stable_sort(m_References.begin(), m_References.end(),
                         [](Reference const& a, Reference const& b) {
                             return GetKind(*a.item) < GetKind(*b.item);
                         });
        for (Reference const& reference : m_References)
            CheckReference(reference);
    }

private:
    struct SourceFile
    {
        QString path;
        DataSourcePtr source;
    };

    struct Reference
    {
        CLibraryItem const* item;
        char const* key;
        std::string uid;
    };

    static KindIndex GetKind(CLibraryItem const& item)
    {
        return GetKindIndex(item.GetIdentity().kind);
    }

    void ReadFile(SourceFile const& file)
    {
        m_Path = file.path;
        FileContent const content = ReadRegularFile(file.path, m_Library.GetFolder());
        QString const fault = DescribeFault(content);
        if (!fault.isEmpty())
            m_Faults.Report(GetShownPath(), fault);
        // The lister is fast but accepts files without faults only; building trees finds the
        // faults.
        else if (ObjectLister& lister = GetLister(file.path); lister.Read(content.bytes))
            ReadListed(file, content, lister);
        else
            ReadTrees(file, content);
    }

    /// The same for all files of a format: it reuses its memory.
    ObjectLister& GetLister(QString const& path)
    {
        ObjectFormat const& format = GetFormat(path);
        std::unique_ptr<ObjectLister>& lister = m_Listers[&format];
        if (!lister)
            lister = format.MakeLister();
        return *lister;
    }

    /// Makes items of the lister's objects.
    void ReadListed(SourceFile const& source, FileContent const& content,
                    ObjectLister const& lister)
    {
        LibraryFile& file = AddFile(source, content, lister.IsArray());
        for (ListedObject const& listed : lister.GetObjects()) {
            ObjectPlace const& place = BeginObject(file);
            bool const isFree = IsUidFree(std::string(listed.uid).c_str(), m_IsTaken, m_Report);
            if (isFree)
                AddItem(file, listed, place);
            else
                // Kept as a raw entry: saves must not drop it, and it becomes an item once the uid
                // is free.
                file.entries.push_back({nullptr, file.objects->Read(place)});
        }
    }

    /// Parses the whole file, to find and report its faults.
    void ReadTrees(SourceFile const& source, FileContent const& content)
    {
        ParsedText parsed = GetFormat(source.path).Parse(content.bytes);
        if (!parsed.fault.isEmpty()) {
            m_Faults.Report(JoinPlace(GetShownPath(), parsed.faultPlace), parsed.fault);
            return;
        }
        ReportRepeatedKeys(parsed.repeatedKeys);
        bool const isArray = parsed.content.is_array();
        if (!isArray && !parsed.content.is_object()) {
            m_Faults.Report(GetShownPath(),
                            QStringLiteral("the file must hold an object or an array "
                                           "of objects; it is left out."));
            return;
        }
        LibraryFile& file = AddFile(source, content, isArray);
        if (!isArray)
            ReadTree(file, parsed.content);
        for (std::size_t i = 0; isArray && i < parsed.content.size(); ++i)
            ReadTree(file, parsed.content[i]);
    }

    void ReadTree(LibraryFile& file, ordered_json& object)
    {
        ObjectPlace const& place = BeginObject(file);
        if (MakesItem(object, m_IsTaken, m_Report))
            AddItem(file, ListObject(object), place);
        else
            file.entries.push_back({nullptr, std::move(object)});
    }

    LibraryFile& AddFile(SourceFile const& source, FileContent const& content, bool isArray)
    {
        LibraryFile& file =
            m_Library.AddFile({source.path, source.source, isArray, {}, GetDigest(content.bytes)});
        CheckRealPlace(file, content.realPath);
        KeptText text = GetFormat(source.path).Keep(content.bytes);
        m_Places = std::move(text.places);
        file.objects = std::move(text.source);
        file.entries.reserve(m_Places.size());
        return file;
    }

    /// The place of the file's next object. There are as many places as objects.
    ObjectPlace const& BeginObject(LibraryFile const& file)
    {
        m_ObjectNumber = int(file.entries.size()) + 1;
        m_IsInArray = file.isArray;
        return m_Places.at(file.entries.size());
    }

    void AddItem(LibraryFile& file, ListedObject const& listed, ObjectPlace const& place)
    {
        CLibraryItem& item = m_Library.AddItem(file, listed, place);
        file.entries.push_back({&item, ordered_json()});
        NoteReference(item, Keys::kParent, listed.parent);
        NoteReference(item, Keys::kSpecializes, listed.specializes);
        NoteReference(item, Keys::kImplements, listed.implements);
    }

    void NoteReference(CLibraryItem const& item, char const* key, std::string_view uid)
    {
        if (!uid.empty())
            m_References.push_back({&item, key, std::string(uid)});
    }

    void ReportRepeatedKeys(std::vector<QString> const& places) const
    {
        for (QString const& place : places) {
            m_Faults.Report(JoinPlace(GetShownPath(), place),
                            QStringLiteral("the key is there more than once. The last value "
                                           "counts; the others are lost when the object is changed "
                                           "and saved."));
        }
    }

    void CheckRealPlace(LibraryFile& file, QString const& realPath) const
    {
        file.isReadOnly = LiesInReadOnlySource(m_Library.GetSources(), realPath);
        if (file.isReadOnly && !file.source->GetDescription().isReadOnly)
            m_Faults.Report(GetShownPath(),
                            QStringLiteral("the link leads to a file of a data source that is "
                                           "read-only; its objects cannot be changed here."));
    }

    void CheckReference(Reference const& reference)
    {
        if (m_Library.FindItem(reference.uid.c_str()))
            return;
        CLibraryItem const& item = *reference.item;
        QString const place =
            JoinPlace(embeddedhost::GetShownPath(m_Library.GetFolder(), item.GetFile().path),
                      QStringLiteral("object %1").arg(QString::fromUtf8(item.GetIdentity().uid)));
        ReportKey(place, QString::fromLatin1(reference.key),
                  QStringLiteral("the library has no object %1.")
                      .arg(QString::fromStdString(reference.uid)));
    }

    void ReportKey(QString const& place, QString const& key, QString const& reason) const
    {
        QString const part = key.isEmpty() ? QString() : QStringLiteral("key \"%1\"").arg(key);
        m_Faults.Report(JoinPlace(place, part), reason);
    }

    QString GetShownPath() const
    {
        return embeddedhost::GetShownPath(m_Library.GetFolder(), m_Path);
    }

    /// The place of the current object, for messages.
    QString GetPlace() const
    {
        return JoinPlace(GetShownPath(),
                         m_IsInArray ? QStringLiteral("object %1").arg(m_ObjectNumber) : QString());
    }

    CLibrary& m_Library;
    FaultReporter const& m_Faults;
    std::vector<SourceFile> m_Files;
    std::map<ObjectFormat const*, std::unique_ptr<ObjectLister>> m_Listers;
    std::vector<Reference> m_References;
    /// The places of the objects in the current file.
    std::vector<ObjectPlace> m_Places;

    // Where the reader is, for messages.
    QString m_Path;
    /// Counted from 1.
    int m_ObjectNumber = 0;
    bool m_IsInArray = false;

    IsUidTaken const m_IsTaken = [this](char const* uid) {
        return m_Library.HasUid(uid);
    };
    ObjectFault const m_Report = [this](QString const& key, QString const& reason) {
        ReportKey(GetPlace(), key, reason);
    };
};

std::optional<Manifest> FindManifest(QString const& folder, FaultReporter const& faults)
{
    QFileInfo const info(folder);
    if (info.isDir())
        return ReadManifest(info.canonicalFilePath(), faults);
    faults.ReportFatal(folder, QStringLiteral("there is no such folder."));
    return std::nullopt;
}

} // namespace

bool CheckLibrary(QString const& folder, CMessageChannel& messages)
{
    CMessageChannel found;
    FaultReporter const faults(found);
    if (FindManifest(folder, faults))
        return true;
    for (CMessageChannel::Message const& message : found.GetLog()) {
        if (message.severity == eSeverity::kError)
            messages.Post(message.severity, message.text);
    }
    return false;
}

std::shared_ptr<CLibrary> ReadLibrary(QString const& folder, CMessageChannel& messages,
                                      ReadProgress const& progress)
{
    FaultReporter const faults(messages);
    std::optional<Manifest> const manifest = FindManifest(folder, faults);
    if (!manifest)
        return nullptr;

    auto library =
        std::make_shared<CLibrary>(QFileInfo(folder).canonicalFilePath(), manifest->name, messages);
    LibraryReader reader(*library, faults);
    reader.AddSources(manifest->sources);
    reader.ListFiles();
    if (!reader.ReadFiles(progress))
        return nullptr;
    // After all files: references may lead to items of files that are read later.
    reader.CheckReferences();
    faults.ReportRest(library->GetFolder());
    return library;
}

} // namespace embeddedhost
