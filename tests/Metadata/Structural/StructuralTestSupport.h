#pragma once
// Sets of the built-in dictionary for the structural tests, held by a small owner that finds
// sets by the value of an element with a plain scan.

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "KLV/KLVTestSupport.h"
#include "Support/ThrownCompare.h"
#include "Metadata/MetadataSetTestSupport.h"
#include "MetaMetadata/Dictionary.h"
#include "MetaMetadata/StandardDictionary.h"
#include "Metadata/MetadataSet.h"
#include "Metadata/MetadataSetFactory.h"
#include "Metadata/MetadataSetOwner.h"
#include "Metadata/MetadataULs.h"
#include "Metadata/PartitionDictionary.h"
#include "Metadata/ElementVisitor.h"
#include "Metadata/SimpleElement.h"
#include "Metadata/Structural/Initialize.h"
#include "Metadata/Structural/StructuralVisitors.h"
#include "Packs/PrimerPack.h"
#include "Types/Factories/UID.h"
#include "Types/UUID.h"

namespace Vellum
{
namespace StructuralTest
{
using KLVTest::n;
using KLVTest::Thrown;
using KLVTest::thrown;
using KLVTest::thrownBy;
using KLVTest::w;

using MetadataSetTest::standardDictionary;

class SetOwner : public Metadata::MetadataSetOwner
{
public:
    SetOwner()
        : announcements(0),
          dictionary_(standardDictionary(), Templates::auto_ptr<Packs::PrimerPack>(new Packs::PrimerPack))
    {
        Metadata::Structural::initialize();
    }

    // A new set of the key's class from the factory, with a new instance UID.
    Metadata::MetadataSet * create(KLV::Key const & key)
    {
        Metadata::MetadataSet * set = Metadata::MetadataSetFactory::instance().create(
            key, standardDictionary()->find(key), this);
        sets_.emplace_back(set);
        Metadata::Visitors::GetNonConstElementVisitor<Metadata::SimpleElement> uid;
        set->find(Metadata::MetadataULs::instanceUID()).accept(uid);
        uid.value()->set(Templates::auto_ptr<Types::SimpleDataType>(
            new Types::UUID(Types::Factories::UID::generateUUID())));
        return set;
    }

    template <class T>
    T * create(KLV::Key const & key)
    {
        return Metadata::Structural::metadataSetAs<T>(create(key));
    }

    void addedElement(Metadata::MetadataSet &, MetaMetadata::MetaElement const *, Metadata::Element &,
                      Types::BaseType &) override
    {
        ++announcements;
    }
    void updatedElement(Metadata::MetadataSet &, MetaMetadata::MetaElement const *, Metadata::Element &,
                        Types::Collection const &, Types::Collection &) override
    {
        ++announcements;
    }
    void updatedElement(Metadata::MetadataSet &, MetaMetadata::MetaElement const *, Metadata::Element &,
                        Types::SimpleDataType const &, Types::SimpleDataType &) override
    {
        ++announcements;
    }
    void updatedElementCollection(Metadata::MetadataSet &, MetaMetadata::MetaElement const *, Metadata::Element &,
                                  Types::Collection const &, unsigned int, Types::BaseType *) override
    {
        ++announcements;
    }
    void removedElement(Metadata::MetadataSet &, MetaMetadata::MetaElement const *, Metadata::Element &,
                        Types::BaseType const &) override
    {
        ++announcements;
    }
    void metadataSetCloned(Metadata::MetadataSet const &, Metadata::MetadataSet &, bool) override {}

    Templates::vector<Metadata::MetadataSet *> find(Types::UniversalLabel const & label,
                                                    Types::SimpleDataType const & value) const override
    {
        Templates::vector<Metadata::MetadataSet *> found;
        for (auto const & set : sets_)
        {
            Metadata::Visitors::GetElementVisitor<Metadata::SimpleElement> simple;
            try
            {
                set->find(label).accept(simple);
            }
            catch (Exceptions::NotFound const &)
            {
                continue;
            }
            Types::SimpleDataType const * held = simple.value() ? simple.value()->value() : nullptr;
            if (held && held->serializedSize() == value.serializedSize() &&
                std::equal(held->rawBuffer(), held->rawBuffer() + held->serializedSize(), value.rawBuffer()))
                found.push_back(set.get());
        }
        return found;
    }
    Metadata::PartitionDictionary const & partitionDictionary() const override { return dictionary_; }
    Metadata::PartitionDictionary & partitionDictionary() override { return dictionary_; }

    int announcements;

private:
    Metadata::PartitionDictionary dictionary_;
    std::vector<std::unique_ptr<Metadata::MetadataSet>> sets_;
};
} // namespace StructuralTest
} // namespace Vellum
