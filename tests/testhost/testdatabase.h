#ifndef NODEBROWSER_TESTS_TESTDATABASE_H
#define NODEBROWSER_TESTS_TESTDATABASE_H

// The object database of the test host.

#include "qorm.h"
#include "refcounted.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

class TestDataSource : public hostkit::CRefCounted<qorm::IDataSource>
{
public:
    explicit TestDataSource(std::string const& uri, int accessMode = 0);
    int GetAccessMode() const override;

    std::string m_Uri;
    int m_AccessMode;
};

/// A database object in all the forms that the contract knows.
class TestObject : public hostkit::CRefCounted<qorm::IDbObject, qorm::ITypeAsset, qorm::IValueAsset>
{
public:
    TestObject(std::string const& uid, int cacheIndex, TestDataSource* source);

    qorm::QormPtr<qorm::IDataModelMgr> GetDataModelMgr() const override;
    bool IsLoaded() const;
    bool IsReadOnly() const override;
    char const* GetName() const override;
    qorm::QormHandle<qorm::IValueAsset> GetAssetHandle() const override;
    qorm::DbObjectId GetDbObjectId() const override;

    std::string m_Uid;
    int m_CacheIndex;
    /// Where it lives; may be null.
    TestDataSource* m_Source;
    bool m_HasManager = true;

    bool m_IsTypeAsset = false;
    bool m_IsLoaded = true;
    bool m_IsReadOnly = false;

    bool m_IsResource = false;
    std::string m_ResourceName;
    /// What the resource stands for; may be null.
    TestDataSource* m_Represents = nullptr;
};

/// One database with its objects. It lives as long as the process, because the panel keeps the
/// two components that long.
class TestDatabase : public hostkit::CRefCounted<qorm::IQormInstance>
{
public:
    static TestDatabase& Get();

    /// Forgets everything but the components.
    void Clear();

    TestDataSource* AddSource(std::string const& uri, int accessMode = 0);
    TestObject& AddObject(std::string const& uid, TestDataSource* source);
    /// An object that stands for the data source.
    TestObject& AddResource(std::string const& uid, std::string const& name,
                            TestDataSource* represents);
    /// Handles to it turn invalid.
    void Remove(TestObject& object);

    /// Null when there is none.
    TestObject* Find(std::string const& uid) const;
    TestObject* At(int cacheIndex) const;
    qorm::QormHandle<qorm::IDbObject> GetHandle(TestObject const* object) const;
    std::vector<TestObject*> GetResources() const;

    /// Where the application's two components live.
    TestDataSource* m_ComponentSources[2];

private:
    TestDatabase();

    std::vector<TestObject*> m_Cache;
    std::vector<TestDataSource*> m_Sources;
};

#endif
