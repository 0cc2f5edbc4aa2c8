// Loads the input as a header metadata region: a Primer pack, then one packet after another
// into a partition's metadata; then the validation queries, the reference walk and writing.
#include "FuzzSupport.h"

#include "KLV/Reader.h"
#include "MetaMetadata/StandardDictionary.h"
#include "Metadata/Element.h"
#include "Metadata/MetadataSet.h"
#include "Metadata/PartitionDictionary.h"
#include "Metadata/PartitionMetadata.h"
#include "Packs/PrimerPack.h"

using namespace Vellum;

extern "C" int LLVMFuzzerTestOneInput(uint8_t const * data, size_t size)
{
    static Templates::SharedPtr<MetaMetadata::Dictionary> dictionary = MetaMetadata::createStandardDictionary();
    DataIO::Memory::MemoryDataSource source(data, size);
    KLV::Reader reader(source);
    Templates::auto_ptr<Packs::PrimerPack> primer;
    VellumFuzz::guarded([&] {
        uint64 skipped = 0;
        Templates::auto_ptr<KLV::Packet> packet = reader.nextKLV(skipped, 0);
        if (Packs::isPrimerPack(packet->key()))
            primer.reset(new Packs::PrimerPack(*packet));
    });
    if (primer.get() == nullptr)
        return 0;
    Templates::auto_ptr<Metadata::PartitionDictionary> partitionDictionary(
        new Metadata::PartitionDictionary(dictionary, std::move(primer)));
    Metadata::PartitionMetadata metadata(std::move(partitionDictionary));
    for (unsigned count = 0; count < 10000 && !source.endOfStream(); ++count)
    {
        bool const more = VellumFuzz::guarded([&] {
            uint64 skipped = 0;
            Templates::auto_ptr<KLV::Packet> packet = reader.nextKLV(skipped, 0);
            VellumFuzz::guarded([&] { metadata.load(*packet); });
        });
        if (!more)
            break;
    }
    VellumFuzz::guarded([&] {
        Templates::vector<Metadata::Element *> elements;
        metadata.openElements(elements);
        metadata.incompleteElements(elements);
        metadata.possiblyOpenElements(elements);
        metadata.possiblyIncompleteElements(elements);
        metadata.possiblyForbiddenElements(elements);
        metadata.getSemanticsValidationElements(elements);
    });
    VellumFuzz::guarded([&] {
        Templates::vector<Metadata::MetadataSet const *> order;
        metadata.calculateSerializationOrder(order, true, true);
        // Each parent search goes over all the sets: a few are enough.
        Templates::vector<Metadata::MetadataSet *> parents;
        unsigned searched = 0;
        for (Metadata::PartitionMetadata::iterator it = metadata.begin(); it != metadata.end() && searched < 8;
             ++it, ++searched)
            metadata.parentSets(it->second, parents);
    });
    VellumFuzz::guarded([&] {
        DataIO::Memory::MemoryDataSink sink;
        metadata.serialize(sink, true, Metadata::PartitionMetadata::ForwardDepthFirst, false);
    });
    return 0;
}
