#pragma once
// The description of one kind of set: its key and every attribute it may hold, those of its
// parent classes included. The attributes are ordered by label, which is the order in which a
// set's elements are written.

#include "KLV/Key.h"
#include "MetaMetadata/MetaAttribute.h"
#include "MetaMetadata/PropertyMap.h"
#include "Templates/AutoPtr.h"
#include "Templates/Containers.h"
#include "Templates/SharedPtr.h"
#include "Types/UniversalLabel.h"

namespace Vellum
{
namespace MetaMetadata
{
class MetaMetadataSet : public PropertyMap
{
public:
    VELLUM_CLASS_ALLOCATION
    typedef Templates::map<Types::UniversalLabel, Templates::SharedPtr<MetaAttribute>> Attributes;
    typedef Attributes::const_iterator const_iterator;

    explicit MetaMetadataSet(KLV::Key const & key);
    // Copies key and attribute map; the attributes themselves are shared.
    MetaMetadataSet(MetaMetadataSet const & other);
    MetaMetadataSet & operator=(MetaMetadataSet const & other);
    ~MetaMetadataSet() override;

    KLV::Key const & key() const;

    // Enters the attribute under its element's label; a label that is there already throws
    // AlreadySet.
    void addMetaAttribute(Templates::SharedPtr<MetaAttribute> attribute);
    // An empty pointer when the label is not in the set.
    Templates::SharedPtr<MetaAttribute> findMetaAttribute(Types::UniversalLabel const & label) const;
    unsigned int metaAttributeCount() const;
    // The keys of the classes that this set's class derives from, its parent first; empty for a
    // root class or a set described without its class tree.
    void ancestors(Templates::vector<KLV::Key> const & keys);
    Templates::vector<KLV::Key> const & ancestors() const;

    const_iterator metaAttributesBegin() const;
    const_iterator metaAttributesEnd() const;

private:
    struct Impl;
    Templates::auto_ptr<Impl> impl_;
};

// Equal keys, as many attributes, pairwise equal attributes, equal properties.
bool operator==(MetaMetadataSet const & a, MetaMetadataSet const & b);
bool operator!=(MetaMetadataSet const & a, MetaMetadataSet const & b);
} // namespace MetaMetadata
} // namespace Vellum
