#pragma once
// The schema: which sets exist, what they hold, what each value is, and the statically assigned
// local tags. Filled once by its owner, then shared read-only.

#include "KLV/Key.h"
#include "MetaMetadata/LocalTagMap.h"
#include "MetaMetadata/MetaElement.h"
#include "MetaMetadata/MetaMetadataSet.h"
#include "MetaMetadata/UniversalLabelMap.h"
#include "Templates/AutoPtr.h"
#include "Templates/Containers.h"
#include "Types/LocalTag.h"
#include "Types/UniversalLabel.h"

namespace Vellum
{
namespace MetaMetadata
{
class Dictionary : public LocalTagMap, public UniversalLabelMap
{
public:
    VELLUM_CLASS_ALLOCATION
    typedef Templates::map<Types::LocalTag, Types::UniversalLabel> LocalTagToLabel;
    typedef Templates::map<Types::UniversalLabel, Types::LocalTag> LabelToLocalTag;
    typedef Templates::map<Types::UniversalLabel, Templates::auto_ptr<MetaElement>> LabelToMetaElement;
    typedef Templates::map<KLV::Key, MetaMetadataSet> KeyToMetaMetadataSet;

    // An empty dictionary.
    Dictionary();
    ~Dictionary() override;

    // Each add replaces what its map held under that key: the last addition wins.
    // The pair goes into both directions independently.
    void add(Types::LocalTag const & tag, Types::UniversalLabel const & label) override;
    Types::LocalTag const * find(Types::UniversalLabel const & label) const override;
    Types::UniversalLabel const * find(Types::LocalTag const & tag) const override;
    // Keeps a copy of the description.
    virtual void add(KLV::Key const & key, MetaMetadataSet const & set);
    virtual MetaMetadataSet const * find(KLV::Key const & key) const;
    // Takes the element over; one that was there under the label is destroyed.
    void add(Types::UniversalLabel const & label, Templates::auto_ptr<MetaElement> element) override;
    MetaElement const * findMetaElement(Types::UniversalLabel const & label) const override;

    // The sets, in key order, whose property `name` is exactly `value`.
    Templates::vector<MetaMetadataSet const *> findMetaMetadataSetProperty(unsigned short const * name,
                                                                           unsigned short const * value) const;
    // The elements, in label order, whose property `name` is exactly `value`.
    Templates::vector<MetaElement const *> findMetaElementProperty(unsigned short const * name,
                                                                   unsigned short const * value) const;
    // The sets, in key order, once for each of their attributes whose property `name` is exactly
    // `value`: a set with two such attributes comes twice.
    Templates::vector<MetaMetadataSet const *> findMetaMetadataSetWithMetaAtributeProperty(
        unsigned short const * name, unsigned short const * value) const;

    LocalTagToLabel::const_iterator localTag2ULBegin() const;
    LocalTagToLabel::const_iterator localTag2ULEnd() const;
    LabelToMetaElement::const_iterator metaElementBegin() const;
    LabelToMetaElement::const_iterator metaElementEnd() const;
    KeyToMetaMetadataSet::const_iterator metaMetadataSetBegin() const;
    KeyToMetaMetadataSet::const_iterator metaMetadataSetEnd() const;

private:
    Dictionary(Dictionary const &) = delete;
    Dictionary & operator=(Dictionary const &) = delete;

    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};
} // namespace MetaMetadata
} // namespace Vellum
