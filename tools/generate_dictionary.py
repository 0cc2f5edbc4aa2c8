#!/usr/bin/env python3
"""Writes the built-in dictionary and the named label constants from the SMPTE metadata registers.

Reads Groups.xml, Elements.xml, Types.xml and Labels.xml (ST 395 groups, ST 335 elements,
ST 2003 types, ST 400 labels) and writes compact C++ tables that the library compiles in:

  src/MetaMetadata/StandardDictionaryTables.inc   sets, members, elements, types, reference targets
  src/Metadata/NamedConstantsTable.inc            the values of the named keys and labels
  tests/MetaMetadata/StandardRegisterTestTable.inc   what the tests check the library against

The output is committed, so that a build never needs the registers. Run it by hand after a
register update:

  python3 tools/generate_dictionary.py [--registers DIR] [--root DIR]
"""

import argparse
import hashlib
import os
import re
import sys
import xml.etree.ElementTree as ElementTree

# ---------------------------------------------------------------------------------------------
# Reading the registers


def read_register(path):
    root = ElementTree.parse(path).getroot()
    namespace = root.tag.split('}')[0] + '}'
    entries = []
    for entry in root.find(namespace + 'Entries'):
        record = {}
        for child in entry:
            tag = child.tag.replace(namespace, '')
            if tag in ('Contents', 'Facets'):
                record[tag] = [{c.tag.replace(namespace, ''): (c.text or '').strip() for c in item}
                               for item in child]
            else:
                record[tag] = (child.text or '').strip()
        entries.append(record)
    return entries


def label_bytes(urn):
    text = urn.replace('urn:smpte:ul:', '').replace('.', '')
    if not re.fullmatch(r'[0-9a-fA-F]{32}', text):
        raise ValueError('not a label: ' + urn)
    return bytes.fromhex(text)


def snapshot_of(path):
    with open(path, 'rb') as stream:
        data = stream.read()
    return '%s sha256:%s (%d bytes)' % (os.path.basename(path), hashlib.sha256(data).hexdigest()[:16], len(data))


# ---------------------------------------------------------------------------------------------
# Type identifiers of the library (Types::Identifiers::Identifier)

ID = {
    'Array': 0, 'Batch': 1, 'Boolean': 2, 'DataStream': 3, 'Int16': 5, 'Int32': 6, 'Int64': 7,
    'Int8': 8, 'ISO7String': 9, 'Key': 10, 'Length': 11, 'LocalTag': 12, 'Position': 13,
    'ProductVersion': 14, 'Rational': 15, 'Timestamp': 16, 'UInt16': 17, 'UInt32': 18,
    'UInt64': 19, 'UInt8': 20, 'UMID32': 21, 'UMID64': 22, 'UL': 23, 'Unknown': 24, 'UTF16': 25,
    'UTF16String': 26, 'UUID': 27, 'VersionType': 28, 'StrongReference': 29,
    'WeakReference': 30, 'DeltaEntry': 31, 'IndexEntry': 32, 'Orientation': 33,
    'RGBALayout': 34, 'SignalStandard': 35, 'DataValue': 36, 'J2KPictureComponent': 37,
    'J2KCodingStyleDefault': 38, 'J2KQuantisationDefault': 39,
}
ID_NAME = {value: key for key, value in ID.items()}

# Identifiers whose values have one size, so that they can be members of an array or a batch.
# Delta and index entries have their own makers in the index table code.
MEMBER_IDS = {ID[n] for n in (
    'Boolean', 'Int16', 'Int32', 'Int64', 'Int8', 'Key', 'Length', 'LocalTag', 'Position',
    'ProductVersion', 'Rational', 'Timestamp', 'UInt16', 'UInt32', 'UInt64', 'UInt8', 'UMID32',
    'UMID64', 'UL', 'UTF16', 'UUID', 'VersionType', 'StrongReference', 'WeakReference',
    'DeltaEntry', 'IndexEntry', 'Orientation', 'RGBALayout', 'SignalStandard',
    'J2KPictureComponent')}

SIMPLE, REFERENCE, COLLECTION, REFERENCE_COLLECTION = range(4)
KIND_NAME = ['Simple', 'Reference', 'Collection', 'ReferenceCollection']

# Records and fixed arrays that have a class of their own.
RECORD_IDS = {
    'AUID': 'UL', 'PackageIDType': 'UMID32', 'Rational': 'Rational', 'TimeStamp': 'Timestamp',
    'VersionType': 'VersionType', 'ProductVersionType': 'ProductVersion',
    'J2KComponentSizing': 'J2KPictureComponent', 'UUID': 'UUID', 'RGBALayout': 'RGBALayout',
}
# Renames that name a class of their own rather than their base type.
RENAME_IDS = {
    'PositionType': 'Position', 'LengthType': 'Length', 'LocalTagType': 'LocalTag',
    'DeltaEntry': 'DeltaEntry', 'IndexEntry': 'IndexEntry',
}
# Elements whose values the library reads with a class of their own, whatever the register's
# generic type says.
ELEMENT_IDS = {
    # A 64-byte extended UMID; a 32-byte basic one is widened when it is read.
    'ExtendedClipID': 'UMID64',
    'CodingStyleDefault': 'J2KCodingStyleDefault',
    'QuantizationDefault': 'J2KQuantisationDefault',
    # Generation and product identifiers are UUIDs in MXF files, where the register has AUID.
    'GenerationID': 'UUID',
    'LinkedGenerationID': 'UUID',
    'ApplicationProductID': 'UUID',
}


class Registers(object):
    def __init__(self, directory):
        self.paths = [os.path.join(directory, name)
                      for name in ('Groups.xml', 'Elements.xml', 'Types.xml', 'Labels.xml')]
        groups, elements, types, labels = [read_register(path) for path in self.paths]
        self.groups = {label_bytes(g['UL']): g for g in groups if g.get('Kind') == 'LEAF'}
        self.elements = {label_bytes(e['UL']): e for e in elements if e.get('Kind') == 'LEAF'}
        self.types = {label_bytes(t['UL']): t for t in types if t.get('Kind') == 'LEAF'}
        self.labels = [l for l in labels if l.get('Kind') == 'LEAF']
        self.snapshot = [snapshot_of(path) for path in self.paths]

    def parent(self, group):
        if not group.get('Parent'):
            return None
        return self.groups[label_bytes(group['Parent'])]

    def ancestry(self, group):
        """The group and its parents, the group first."""
        chain = [group]
        while True:
            parent = self.parent(chain[-1])
            if parent is None:
                return chain
            chain.append(parent)

    def group_by_symbol(self, symbol):
        found = [g for g in self.groups.values() if g['Symbol'] == symbol]
        if len(found) != 1:
            raise LookupError('group %s: %d entries' % (symbol, len(found)))
        return found[0]


# ---------------------------------------------------------------------------------------------
# Which sets go in: local sets (byte 5 of the key 0x53) that live in header metadata, that is
# every class below Interchange Object, and the classes of a file's own object dictionary.

HEADER_METADATA_ROOTS = ('InterchangeObject', 'AbstractObject', 'MetaDefinition', 'MetaDictionary',
                         'ExtensionScheme', 'Root')


def is_local_set(group):
    return '53' in group.get('KLVSyntax', '').split()


def is_header_set(registers, group):
    if not is_local_set(group):
        return False
    return any(g['Symbol'] in HEADER_METADATA_ROOTS for g in registers.ancestry(group))


def is_concrete(group):
    # The register leaves the flag out for many concrete sets; only "false" marks an abstract one.
    return group.get('IsConcrete') != 'false'


def local_set_key(group_label):
    key = bytearray(group_label)
    if key[5] != 0x7f:
        raise ValueError('group key without the any-syntax byte: ' + group_label.hex())
    key[5] = 0x53
    return bytes(key)


def flat_members(registers, group):
    """Members of the group with those of its parents, the root's first, each label once."""
    members = []
    seen = set()
    for g in reversed(registers.ancestry(group)):
        for record in g.get('Contents', []):
            label = label_bytes(record['UL'])
            if label in seen:
                continue
            seen.add(label)
            tag = record.get('LocalTag') or ''
            members.append({
                'label': label,
                'tag': int(tag, 16) if tag else 0,
                'optional': record.get('IsOptional', 'true') != 'false',
            })
    return members


# ---------------------------------------------------------------------------------------------
# Mapping register types to the library's value classes


class TypeMapper(object):
    def __init__(self, registers):
        self.registers = registers
        self.definition_roots = {label_bytes(registers.group_by_symbol(s)['UL'])
                                 for s in ('DefinitionObject', 'MetaDefinition')}

    def _is_definition(self, group_label):
        group = self.registers.groups.get(group_label)
        if group is None:
            return False
        return any(label_bytes(g['UL']) in self.definition_roots for g in self.registers.ancestry(group))

    def _base(self, entry):
        return self.registers.types[label_bytes(entry['BaseType'])]

    def simple(self, type_label):
        """(kind, identifier, target group label or None) of a value of this type."""
        entry = self.registers.types.get(type_label)
        if entry is None:
            return SIMPLE, ID['DataValue'], None
        kind = entry.get('TypeKind')
        symbol = entry['Symbol']
        if kind == 'Integer':
            if symbol == 'Float':
                return SIMPLE, ID['DataValue'], None
            size = int(entry['TypeSize'])
            signed = 'isSigned' in entry.get('TypeQualifiers', '')
            name = {1: 'Int8', 2: 'Int16', 4: 'Int32', 8: 'Int64'}.get(size) if signed else \
                {1: 'UInt8', 2: 'UInt16', 4: 'UInt32', 8: 'UInt64'}.get(size)
            return SIMPLE, ID[name or 'DataValue'], None
        if kind == 'Rename':
            if symbol in RENAME_IDS:
                return SIMPLE, ID[RENAME_IDS[symbol]], None
            return self.simple(label_bytes(entry['BaseType']))
        if kind == 'Enumeration':
            if symbol == 'Boolean':
                return SIMPLE, ID['Boolean'], None
            if symbol == 'SignalStandardType':
                return SIMPLE, ID['SignalStandard'], None
            return self.simple(label_bytes(entry['BaseType']))
        if kind in ('Record', 'FixedArray'):
            return SIMPLE, ID[RECORD_IDS.get(symbol, 'DataValue')], None
        if kind == 'Character':
            return SIMPLE, ID['UTF16' if symbol == 'Character' else 'DataValue'], None
        if kind == 'String':
            return SIMPLE, ID[{'UTF16String': 'UTF16String', 'ISO7': 'ISO7String'}.get(symbol, 'DataValue')], None
        if kind == 'Stream':
            return SIMPLE, ID['DataStream'], None
        if kind == 'StrongReference':
            return REFERENCE, ID['StrongReference'], label_bytes(entry['BaseType'])
        if kind == 'WeakReference':
            target = label_bytes(entry['BaseType'])
            if self._is_definition(target):
                # Definitions are referred to by their identification, a label.
                return SIMPLE, ID['UL'], None
            return REFERENCE, ID['WeakReference'], target
        if kind in ('VariableArray', 'Set'):
            if symbol == 'DataValue':
                return SIMPLE, ID['DataValue'], None
            collection = ID['Array' if kind == 'VariableArray' else 'Batch']
            if self._base(entry).get('TypeKind') == 'Character':
                # Runs of characters are text: a string array is coded as zero-terminated strings
                # one behind the other, with no count and no member size. Its bytes stay as they are.
                return SIMPLE, ID['DataValue'], None
            member_kind, member_id, target = self.simple(label_bytes(entry['BaseType']))
            if member_kind == REFERENCE:
                return REFERENCE_COLLECTION, (collection, member_id), target
            if member_kind == SIMPLE and member_id in MEMBER_IDS:
                return COLLECTION, (collection, member_id), None
            # Members without a size of their own (strings, records): the bytes as they are.
            return SIMPLE, ID['DataValue'], None
        return SIMPLE, ID['DataValue'], None

    def element(self, element):
        """(kind, dataType, dataSubType, target group label or None) of an element."""
        if element['Symbol'] in ELEMENT_IDS:
            return SIMPLE, ID[ELEMENT_IDS[element['Symbol']]], ID['Unknown'], None
        if not element.get('Type'):
            return SIMPLE, ID['DataValue'], ID['Unknown'], None
        kind, identifier, target = self.simple(label_bytes(element['Type']))
        if kind in (COLLECTION, REFERENCE_COLLECTION):
            return kind, identifier[0], identifier[1], target
        return kind, identifier, ID['Unknown'], target


# ---------------------------------------------------------------------------------------------
# Named constants. Each entry: constant name, then the register symbol where the name does not
# say it plainly; a constant without a symbol is matched by name among the members of the sets
# of its family.

STRUCTURAL_SETS = (
    'AES3PCMDescriptor', 'ANCDataDescriptor', 'CDCIDescriptor', 'ContentStorage',
    'CryptographicContext', 'CryptographicFramework', 'DescriptiveMarker', 'DescriptiveClip',
    'EssenceData', 'EventTrack', 'FileDescriptor', 'DataEssenceDescriptor', 'PictureDescriptor',
    'SoundDescriptor', 'Identification', 'JPEG2000SubDescriptor', 'MaterialPackage',
    'MPEGVideoDescriptor', 'MultipleDescriptor', 'NetworkLocator', 'Preface', 'RGBADescriptor',
    'Sequence', 'DateTimeDescriptor', 'SourceClip', 'SourcePackage', 'StaticTrack', 'TextLocator',
    'Timecode', 'TimelineTrack', 'RIFFChunk', 'VBIDataDescriptor', 'WAVEPCMDescriptor',
    'BWFImportDescriptor', 'TimecodeStream12M')

STRUCTURAL_KEYS = [
    ('aes3AudioEssenceDescriptor', 'AES3PCMDescriptor'),
    ('ancPacketsDescriptor', 'ANCDataDescriptor'),
    ('cdciEssenceDescriptor', 'CDCIDescriptor'),
    ('contentStorage', 'ContentStorage'),
    ('cryptographicContext', 'CryptographicContext'),
    ('cryptographicFramework', 'CryptographicFramework'),
    ('dmSegment', 'DescriptiveMarker'),
    ('dmSourceClip', 'DescriptiveClip'),
    ('essenceContainerData', 'EssenceData'),
    ('eventTrack', 'EventTrack'),
    ('fileDescriptor', 'FileDescriptor'),
    ('genericDataEssenceDescriptor', 'DataEssenceDescriptor'),
    ('genericPictureEssenceDescriptor', 'PictureDescriptor'),
    ('genericSoundEssenceDescriptor', 'SoundDescriptor'),
    ('identification', 'Identification'),
    ('jpeg2000PictureSubDescriptor', 'JPEG2000SubDescriptor'),
    ('materialPackage', 'MaterialPackage'),
    ('mpeg2VideoDescriptor', 'MPEGVideoDescriptor'),
    ('multipleDescriptor', 'MultipleDescriptor'),
    ('networkLocator', 'NetworkLocator'),
    ('preface', 'Preface'),
    ('rgbaEssenceDescriptor', 'RGBADescriptor'),
    ('sequence', 'Sequence'),
    ('smpte331MTimeDateItemDescriptor', 'DateTimeDescriptor'),
    ('sourceClip', 'SourceClip'),
    ('sourcePackage', 'SourcePackage'),
    ('staticTrack', 'StaticTrack'),
    ('textLocator', 'TextLocator'),
    ('timecodeComponent', 'Timecode'),
    ('timelineTrack', 'TimelineTrack'),
    ('unknownChunkSet', 'RIFFChunk'),
    ('vbiDataDescriptor', 'VBIDataDescriptor'),
    ('waveAudioEssenceDescriptor', 'WAVEPCMDescriptor'),
    ('waveAudioPhysicalDescriptor', 'BWFImportDescriptor'),
]

STRUCTURAL_LABELS = [
    ('activeFormatDescriptor',), ('alphaMaxRef',), ('alphaMinRef',), ('alphaSampleDepth',),
    ('alphaTransparency',), ('aspectRatio', 'ImageAspectRatio'),
    ('audioRefLevel', 'AudioReferenceLevel'), ('audioSamplingRate', 'AudioSampleRate'),
    ('auxBitsMode',), ('avgBps', 'AverageBytesPerSecond'), ('bPictureCount', 'MaxBPictureCount'),
    ('basicData', 'QltyBasicData'), ('bitRate',), ('blackRefLevel',), ('blockAlign',),
    ('blockStartOffset',), ('bodySID', 'EssenceStreamID'),
    ('captureGamma', 'TransferCharacteristic'), ('channelAssignment',), ('channelCount',),
    ('channelStatusMode',), ('chunckData', 'ChunkData'), ('chunkID', 'ChunkID'),
    ('chunkLength', 'ChunkLength'), ('cipherAlgorithm',), ('closedGOP',), ('codec', 'Codec'),
    ('codedContentType', 'CodedContentScanning'), ('codingHistory', 'BextCodingHistory'),
    ('codingStyleDefault',), ('colorRange',), ('colorSiting',),
    ('companyName', 'ApplicationSupplierName'), ('componentDepth',), ('componentMaxRef',),
    ('componentMinRef',), ('constantBFrames', 'ConstantBPictureCount'),
    ('containerDuration', 'EssenceLength'), ('contentStorage', 'ContentStorageObject'),
    ('contextHolder', 'CryptographicContextObject'), ('cryptographicContextID',),
    ('cryptographicKeyID',), ('csiz',), ('cueSheet', 'QltyCueSheet'),
    ('dataDefinition', 'ComponentDataDefinition'), ('dataEssenceCoding',),
    ('dateTimeDropFrame',), ('dateTimeEmbeded', 'DateTimeEmbedded'), ('dateTimeKind',),
    ('dateTimeRate',), ('descriptor', 'EssenceDescription'), ('dialNorm',),
    ('displayF2Offset',), ('displayHeight',), ('displayWidth',), ('displayXOffset',),
    ('displayYOffset',), ('dmFramework', 'DescriptiveFrameworkObject'),
    ('dmSchemes', 'DescriptiveSchemes'), ('dmSegmentTrackIDs', 'DescribedTrackIDs'),
    ('dmSourceClipTrackIDs', 'DescriptiveClipDescribedTrackIDs'), ('dropFrame', 'DropFrame'),
    ('duration', 'ComponentLength'), ('editRate', 'EditRate'),
    ('electroSpatialFormulation', 'ElectrospatialFormulation'), ('emphasis',),
    ('endModulation', 'QltyEndOfModulation'), ('essenceContainer', 'ContainerFormat'),
    ('essenceContainerData', 'EssenceDataObjects'), ('essenceContainers', 'EssenceContainers'),
    ('eventComment', 'EventComment'), ('eventEditRate', 'EventTrackEditRate'),
    ('eventOrigin', 'EventTrackOrigin'), ('eventStartPosition', 'EventPosition'),
    ('fieldDominance',), ('fileSecurityReport', 'QltyFileSecurityReport'),
    ('fileSecurityWave', 'QltyFileSecurityWave'), ('fixedChannelStatusData',),
    ('fixedUserData',), ('frameLayout',), ('generationUID', 'LinkedGenerationID'),
    ('horizontalSubsampling',), ('identicalGOP',), ('identificationList',),
    ('imageAlignmentOffset', 'ImageAlignmentFactor'), ('imageEndOffset',),
    ('imageStartOffset',), ('includeSync', 'IncludeSync'), ('indexSID', 'IndexStreamID'),
    ('instanceUID', 'InstanceID'), ('lastModifiedDate', 'FileLastModified'),
    ('linkedPackageUID', 'LinkedPackageID'), ('linkedTimecodeTrackID', 'LinkedTimecodeTrackID'),
    ('linkedTrackID', 'LinkedTrackID'), ('locatorName', 'LocationName'),
    ('locators', 'Locators'), ('lockedUnlocked', 'Locked'), ('lowDelay',),
    ('mICAlgorithm', 'MICAlgorithm'), ('maxGOP',), ('modifiedDate', 'FileModificationDate'),
    ('null', None), ('objectModelVersion',), ('operationalPattern',),
    ('operatorComment', 'QltyOperatorComment'), ('origin', 'Origin'),
    ('packageCreationDate', 'CreationTime'), ('packageModifiedDate', 'PackageLastModified'),
    ('packageName', 'PackageName'), ('packageUID', 'PackageID'), ('packages', 'Packages'),
    ('paddingBits',), ('palette',), ('paletteLayout',), ('peakChannels',), ('peakEnvelopeBlockSize',),
    ('peakEnvelopeData',), ('peakEnvelopeFormat',), ('peakEnvelopeTimestamp',),
    ('peakEnvelopeVersion',), ('peakFrames',), ('peakOfPeaksPosition',),
    ('pictureComponentSizing',), ('pictureEssenceCoding', 'PictureCompression'),
    ('pixelLayout',), ('platform', 'ApplicationPlatform'), ('pointsPerPeakValue',),
    ('primaryPackage',), ('productName', 'ApplicationName'),
    ('productUID', 'ApplicationProductID'), ('productVersion', 'ApplicationVersion'),
    ('profileAndLevel',), ('qualityEvent', 'QltyQualityEvent'),
    ('qualityParameter', 'QltyQualityParameter'), ('quantisationDefault', 'QuantizationDefault'),
    ('quantizationBits', 'QuantizationBits'), ('reversedByteOrder',),
    ('roundedTimecodeBase', 'FramesPerSecond'), ('rsiz',), ('sampleRate', 'SampleRate'),
    ('sampledHeight',), ('sampledWidth',), ('sampledXOffset',), ('sampledYOffset',),
    ('scanningDirection',), ('sequence', 'TrackSegment'), ('sequenceOffset',),
    ('signalStandard',), ('singleSequence',), ('smpte337mDataStreamNumber', 'DataStreamNumber'),
    ('soundEssenceCompression', 'SoundCompression'), ('sourceContainerFormat',),
    ('sourcePackageID', 'SourcePackageID'), ('sourceTimecodeType', 'TimecodeSource'),
    ('sourceTrackID', 'SourceTrackID'), ('startModulation', 'QltyStartOfModulation'),
    ('startPosition', 'StartPosition'), ('startTimecode', 'StartTimecode'),
    ('storedF2Offset',), ('storedHeight',), ('storedWidth',),
    ('structuralComponents', 'ComponentObjects'), ('subDescriptorUIDs', 'FileDescriptors'),
    ('subDescriptors', 'SubDescriptors'), ('tcDataStream', 'TimecodeStreamData'),
    ('tcSampleRate', 'TimecodeStreamSampleRate'), ('thisGenerationUID', 'GenerationID'),
    ('toolkitVersion',), ('trackID', 'TrackID'), ('trackName', 'TrackName'),
    ('trackNumber', 'EssenceTrackNumber'), ('tracks', 'PackageTracks'), ('unknownBWFChunks',),
    ('urlString', 'URL'), ('userDataMode',), ('version', 'FormatVersion'),
    ('versionString', 'ApplicationVersionString'), ('verticalSubsampling',),
    ('videoLineMap',), ('whiteRefLevel',), ('xOsiz',), ('xTOsiz',), ('xTsiz',), ('xsiz',),
    ('yOsiz',), ('yTOsiz',), ('yTsiz',), ('ysiz',),
]

METADATA_LABELS = [
    ('instanceUID', 'InstanceID'), ('linkedPackageUID', 'LinkedPackageID'), ('null', None),
    ('packageUID', 'PackageID'), ('packages', 'Packages'), ('thisGenerationUID', 'GenerationID'),
    ('trackID', 'TrackID'),
]

DATA_DEFINITIONS = [
    ('audio', 'SoundEssenceTrack'), ('auxiliaryData', 'AuxiliaryDataTrack'),
    ('data', 'DataEssenceTrack'), ('descriptiveMetadata', 'DescriptiveMetadataTrack'),
    ('parsedText', 'ParsedTextTrack'), ('picture', 'PictureEssenceTrack'),
    ('timecode12MActive', 'SMPTE12MTimecodeTrackActiveUserBits'),
    ('timecode12MInactive', 'SMPTE12MTimecodeTrackInactiveUserBits'),
    ('timecode309M', 'SMPTE309MTimecodeTrackDatecodeUserBits'),
]

WRAPPINGS = [
    ('multipleWrapping', 'MXFGCGenericEssenceMultipleMappings'),
]

INDEX_TABLE_LABELS = [
    ('deltaEntryArray', 'DeltaEntryArray'), ('editUnitByteCount', 'EditUnitByteCount'),
    ('indexDuration', 'IndexDuration'), ('indexEditRate', 'IndexEditRate'),
    ('indexEntryArray', 'IndexEntryArray'), ('indexStartPosition', 'IndexStartPosition'),
    ('positionTableCount', 'PositionTableCount'), ('sliceCount', 'SliceCount'),
]

DMS1_KEYS = [
    ('address', 'Address'), ('annotation', 'DMS1Annotation'), ('award', 'Award'),
    ('branding', 'Branding'), ('captionsDescription', 'CaptionsDescription'),
    ('classification', 'Classification'), ('clipFramework', 'ClipFramework'),
    ('communications', 'Communications'), ('contactsList', 'ContactsList'),
    ('contract', 'Contract'), ('cueWords', 'CueWords'),
    ('dMS1Identification', 'DMS1Identification'), ('deviceParameters', 'DeviceParameters'),
    ('event', 'DMS1Event'), ('groupRelationship', 'GroupRelationship'),
    ('keyPoint', 'Keypoint'), ('location', 'Location'), ('nameValue', 'NameValue'),
    ('organisation', 'Organization'), ('participant', 'Participant'), ('person', 'Person'),
    ('pictureFormat', 'PictureFormat'), ('processing', 'Processing'),
    ('productionFramework', 'ProductionFramework'), ('project', 'Project'),
    ('publication', 'Publication'), ('rights', 'Rights'), ('sceneFramework', 'SceneFramework'),
    ('scripting', 'Scripting'), ('settingPeriod', 'SettingPeriod'), ('shot', 'Shot'),
    ('titles', 'Titles'),
]

DMS1_LABELS = [
    ('addressNameValueSets', 'AddressNameValueObjects'), ('addressSets', 'AddressObjects'),
    ('alternateName',), ('annotationCueWordsSet', 'AnnotationCueWordsObject'),
    ('annotationDescription',), ('annotationKind',),
    ('annotationParticipantSets', 'AnnotationParticipants'), ('annotationSets', 'AnnotationObjects'),
    ('annotationSynopsis',), ('astronomicalBodyName',), ('awardClassification', 'AwardCategory'),
    ('awardName',), ('awardParticipantSets', 'AwardParticipants'), ('awardSets', 'AwardObjects'),
    ('brandMainTitle',), ('brandOriginalTitle',), ('brandingSets', 'BrandingObjects'),
    ('buildingName',), ('captionKind',), ('captionLanguageCode', 'ISO639CaptionsLanguageCode'),
    ('captionsDescriptionSets', 'CaptionsDescriptionObjects'), ('centralTelephoneNumber',),
    ('citizenship',), ('city', 'City'),
    ('classificationNameValueSets', 'ClassificationNameValueObjects'),
    ('classificationSets', 'ClassificationObjects'),
    ('clipCreationDateAndTime', 'ClipCreationDateTime'), ('clipKind',), ('clipNumber',),
    ('clipShotSets', 'ClipShotObjects'), ('colourDescriptor', 'ColorDescriptor'),
    ('communicationsSets', 'CommunicationsObjects'), ('contactDepartment',),
    ('contactUID', 'ContactID'), ('contactsListNameValueSets', 'ContactNameValueObjects'),
    ('contactsListSet', 'ContactsListObject'), ('contentClassification',),
    ('contractParticipantSets', 'ContractParticipants'), ('contractSets', 'ContractObjects'),
    ('contributionStatus',), ('copyrightOwner',), ('country', 'Country'),
    ('descriptiveComment',), ('deviceAssetNumber',), ('deviceDesignation',), ('deviceModel',),
    ('deviceParametersNameValueSets', 'DeviceParametersNameValueObjects'),
    ('deviceParametersSets', 'DeviceParametersObjects'), ('deviceSerialNumber',),
    ('deviceType', 'DeviceKind'), ('deviceUsageDescription',), ('emailAddress', 'EmailAddress'),
    ('episodicEndNumber',), ('episodicStartNumber',),
    ('eventAnnotationSets', 'EventAnnotationObjects'),
    ('eventEndDateAndTime', 'EventEndDateTime'), ('eventIndication',),
    ('eventSets', 'EventObjects'), ('eventStartDateAndTime', 'EventStartDateTime'),
    ('extendedCaptionsLanguageCode',), ('extendedClipID',), ('familyName', 'FamilyName'),
    ('faxNumber',), ('festival', 'FestivalName'), ('festivalDateAndTime', 'FestivalDateTime'),
    ('firstGivenName',), ('formerFamilyName',), ('frameworkExtendedTextLanguageCode',),
    ('frameworkThesaurusName',), ('frameworkTitle',), ('generationCloneNumber',),
    ('generationCopyNumber',), ('geographicalCoordinate', 'GeographicalCoordinates'),
    ('graphicUsageType', 'GraphicUsage'), ('groupRelationshipSets', 'GroupRelationshipObjects'),
    ('groupSynopsis',), ('honoursQualificationsEtc', 'HonorsQualifications'),
    ('iEEEDeviceIdentifier', 'IEEEDeviceIdentifier'), ('identificationIssuingAuthority',),
    ('identificationLocator',), ('identificationSets', 'IdentificationObjects'),
    ('identifierKind',), ('identifierValue', 'IdentifierValue'),
    ('imageFormatSet', 'PictureFormatObject'), ('inCueWords',), ('integrationIndication',),
    ('intellectualPropertyRight',), ('intellectualPropertyType', 'IntellectualPropertyDescription'),
    ('itemName',), ('itemValue',), ('jobFunction', 'JobFunction'), ('jobFunctionCode',),
    ('keyPointKind', 'KeypointKind'), ('keyPointPosition', 'KeypointPosition'),
    ('keyPointSets', 'KeyPointObjects'), ('keyPointValue', 'KeypointValue'), ('linkingName',),
    ('locationDescription',), ('locationKind',), ('locationSetsStrong', 'LocationObjects'),
    ('locationSetsWeak', 'Locations'), ('logoFlag',), ('mainTitle',),
    ('manufacturer', 'DeviceManufacturerName'), ('maximumNumberOfUsages', 'MaxNumberOfUsages'),
    ('metadataServerLocators',), ('mobileTelephoneNumber', 'MobileTelephoneNumber'),
    ('nameSuffix',), ('nationality', 'Nationality'), ('natureOfOrganisation', 'OrganizationKind'),
    ('nominationCategory',), ('numericalPositionInSequence', 'PositionInSequence'),
    ('organisationCode', 'OrganizationCode'), ('organisationMainName', 'OrganizationMainName'),
    ('organisationSets', 'OrganizationObjects'), ('originalExtendedSpokenLanguageCode',),
    ('originalTitle',), ('otherGivenNames',), ('outCueWords',),
    ('participantOrganisationSets', 'ParticipantOrganizations'),
    ('participantSets', 'ParticipantObjects'), ('participantUID', 'ParticipantID'),
    ('perceivedDisplayFormat',), ('personDescription',),
    ('personOrganisationSets', 'PersonOrganizations'), ('personSetsStrong', 'PersonObjects'),
    ('personSetsWeak', 'Persons'), ('placeName',), ('postalCode',), ('postalTown',),
    ('primaryExtendedSpokenLanguageCode',), ('processSteps', 'SimpleFlagging'),
    ('processingSet', 'ProcessingObject'),
    ('productionSettingPeriodSets', 'ProductionSettingPeriodObjects'),
    ('progammingGroupTitle', 'ProgrammingGroupTitle'), ('programmingGroupKind',),
    ('projectName',), ('projectNumber',), ('projectSet', 'ProjectObject'),
    ('publicationMedium', 'PublishingMediumName'),
    ('publicationOrganisationName', 'PublishingOrganizationName'),
    ('publicationRegion', 'PublishingRegionName'),
    ('publicationServiceName', 'PublishingServiceName'), ('publicationSets', 'PublicationObjects'),
    ('qualityFlag',), ('regionOrAreaOfIPLicense', 'RegionAreaOfIPLicense'),
    ('relatedMaterialDescription',), ('relatedMaterialLocators',),
    ('rightCondition', 'RightsCondition'), ('rightRemarks', 'RightsComment'),
    ('rightsHolder', 'Rightsholder'), ('rightsManagementAuthority',), ('rightsSets', 'RightsObjects'),
    ('rightsStartDateAndTime', 'RightsStartDateTime'),
    ('rightsStopDateAndTime', 'RightsStopDateTime'), ('roleOrIdentityName', 'RoleName'),
    ('roomOrSuiteName', 'RoomSuiteName'), ('roomOrSuiteNumber', 'RoomSuiteNumber'),
    ('sMPTEUniversalLabelLocator', 'SMPTEUniversalLabelLocator'), ('salutation', 'Salutation'),
    ('sceneNumber',), ('sceneSettingPeriodSets', 'SceneSettingPeriodObjects'),
    ('sceneShotSets', 'SceneShotObjects'), ('scriptingKind',), ('scriptingLocators',),
    ('scriptingSets', 'ScriptingObjects'), ('scriptingText',),
    ('secondaryExtendedSpokenLanguageCode',), ('secondaryTitle',),
    ('settingDateAndTime', 'SettingDateTime'), ('settingPeriodDescription',), ('shotComment',),
    ('shotCommentKind',), ('shotCueWordsSet', 'ShotCueWordsObject'), ('shotDescription',),
    ('shotDuration',), ('shotStartPosition',), ('shotTrackIDs',), ('slateInformation',),
    ('stateOrProvinceOrCounty', 'StateProvinceCounty'), ('streetName',), ('streetNumber',),
    ('supplyContractNumber',), ('takeNumber',), ('telephoneNumber', 'TelephoneNumber'),
    ('thesaurusName',), ('timePeriodKeyword',), ('titlesSets', 'TitlesObjects'),
    ('totalNumberInTheSequence', 'TotalNumberInSequence'), ('versionTitle',),
    ('viewportAspectRatio',), ('webPage', 'ContactWebPage'), ('workingTitle',),
]


def normalized(text):
    return re.sub(r'[^a-z0-9]', '', text.lower())


class ConstantResolver(object):
    def __init__(self, registers):
        self.registers = registers

    def family_elements(self, group_symbols):
        labels = []
        for symbol in group_symbols:
            for member in flat_members(self.registers, self.registers.group_by_symbol(symbol)):
                if member['label'] not in labels:
                    labels.append(member['label'])
        return [(label, self.registers.elements[label]) for label in labels]

    def element(self, name, symbol, family):
        if symbol is not None:
            found = [(l, e) for l, e in family if e['Symbol'] == symbol]
            if not found:
                found = [(l, e) for l, e in self.registers.elements.items() if e['Symbol'] == symbol]
        else:
            found = [(l, e) for l, e in family
                     if normalized(name) in (normalized(e['Symbol']), normalized(e['Name']))]
        if len(found) != 1:
            raise LookupError('constant %s (%s): %d candidates' % (name, symbol, len(found)))
        return found[0]

    def labels(self, entries, family):
        out = []
        for entry in entries:
            name = entry[0]
            symbol = entry[1] if len(entry) > 1 else None
            if len(entry) > 1 and symbol is None:
                out.append((name, bytes(16), None))
                continue
            label, element = self.element(name, symbol, family)
            out.append((name, label, element['Symbol']))
        return out

    def keys(self, entries):
        return [(name, local_set_key(label_bytes(self.registers.group_by_symbol(symbol)['UL'])), symbol)
                for name, symbol in entries]

    def register_labels(self, entries):
        out = []
        for name, symbol in entries:
            found = [l for l in self.registers.labels if l['Symbol'] == symbol]
            if len(found) != 1:
                raise LookupError('label %s: %d entries' % (symbol, len(found)))
            out.append((name, label_bytes(found[0]['UL']), symbol))
        return out

    def all(self):
        structural_family = self.family_elements(STRUCTURAL_SETS)
        dms1_family = self.family_elements([k[1] for k in DMS1_KEYS])
        index_family = self.family_elements(['IndexTableSegment'])
        return [
            ('Metadata::MetadataKeys', 'KLV::Key', 'METADATA_KEYS', self.keys([('preface', 'Preface')])),
            ('Metadata::MetadataULs', 'Types::UniversalLabel', 'METADATA_ULS',
             self.labels(METADATA_LABELS, structural_family)),
            ('Metadata::Structural::StructuralMetadataKeys', 'KLV::Key', 'STRUCTURAL_METADATA_KEYS',
             self.keys(STRUCTURAL_KEYS)),
            ('Metadata::Structural::StructuralMetadataULs', 'Types::UniversalLabel',
             'STRUCTURAL_METADATA_ULS', self.labels(STRUCTURAL_LABELS, structural_family)),
            ('Metadata::Structural::DataDefinitionULs', 'Types::UniversalLabel', 'DATA_DEFINITION_ULS',
             self.register_labels(DATA_DEFINITIONS)),
            ('Metadata::Structural::Wrappings', 'Types::UniversalLabel', 'WRAPPINGS',
             self.register_labels(WRAPPINGS)),
            ('Metadata::DMS1::DMS1MetadataKeys', 'KLV::Key', 'DMS1_METADATA_KEYS', self.keys(DMS1_KEYS)),
            ('Metadata::DMS1::DMS1MetadataULs', 'Types::UniversalLabel', 'DMS1_METADATA_ULS',
             self.labels(DMS1_LABELS, dms1_family)),
            ('Metadata::Structural::IndexTablesULs', 'Types::UniversalLabel', 'INDEX_TABLES_ULS',
             self.labels(INDEX_TABLE_LABELS, index_family)),
        ]


# ---------------------------------------------------------------------------------------------
# Building the tables


class Dictionary(object):
    def __init__(self, registers):
        self.registers = registers
        mapper = TypeMapper(registers)
        header_sets = [g for g in registers.groups.values() if is_header_set(registers, g)]
        header_sets.sort(key=lambda g: label_bytes(g['UL']))
        self.sets = []
        set_index = {}
        for group in header_sets:
            set_index[label_bytes(group['UL'])] = len(self.sets)
            self.sets.append({
                'group': group,
                'key': local_set_key(label_bytes(group['UL'])),
                'members': flat_members(registers, group),
                'concrete': is_concrete(group),
            })
        # Each set's nearest ancestor class that is a set of the dictionary too (-1: none).
        for entry in self.sets:
            ancestors = registers.ancestry(entry['group'])[1:]
            rows = [set_index[label_bytes(a['UL'])] for a in ancestors if label_bytes(a['UL']) in set_index]
            entry['parent'] = rows[0] if rows else -1
        # Index table segments are read by the index table code, not as header metadata, but
        # their statically assigned tags belong to the tag maps all the same.
        index_segment = registers.group_by_symbol('IndexTableSegment')
        self.extra_members = flat_members(registers, index_segment)

        labels = []
        for s in self.sets:
            labels += [m['label'] for m in s['members']]
        labels += [m['label'] for m in self.extra_members]
        ordered = sorted(set(labels))
        self.element_index = {label: i for i, label in enumerate(ordered)}

        self.types = []
        type_index = {}
        self.targets = []
        target_index = {}
        self.elements = []
        for label in ordered:
            element = registers.elements[label]
            type_label = label_bytes(element['Type']) if element.get('Type') else bytes(16)
            if type_label not in type_index:
                type_entry = registers.types.get(type_label)
                type_index[type_label] = len(self.types)
                self.types.append((type_label, type_entry['Symbol'] if type_entry else ''))
            kind, data_type, sub_type, target = mapper.element(element)
            targets = ()
            if target is not None:
                targets = tuple(self.allowed_targets(target, set_index))
                if targets not in target_index:
                    target_index[targets] = len(self.targets)
                    self.targets.append(targets)
            self.elements.append({
                'label': label, 'symbol': element['Symbol'], 'name': element['Name'],
                'type': type_index[type_label], 'kind': kind, 'dataType': data_type,
                'dataSubType': sub_type, 'targets': target_index[targets] if targets else 0,
                'targetCount': len(targets),
            })

        self.tags = {}
        for members in [s['members'] for s in self.sets] + [self.extra_members]:
            for m in members:
                if not m['tag']:
                    continue
                known = self.tags.get(m['tag'])
                if known is not None and known != m['label']:
                    raise ValueError('tag %04x names two labels' % m['tag'])
                self.tags[m['tag']] = m['label']
        seen = {}
        for tag, label in self.tags.items():
            if label in seen:
                raise ValueError('label %s has tags %04x and %04x' % (label.hex(), seen[label], tag))
            seen[label] = tag

    def allowed_targets(self, target, set_index):
        """The set a reference names, then every concrete set derived from it."""
        out = []
        if target in set_index:
            out.append(set_index[target])
        for i, s in enumerate(self.sets):
            if i in out or not s['concrete']:
                continue
            if any(label_bytes(g['UL']) == target for g in self.registers.ancestry(s['group'])[1:]):
                out.append(i)
        if not out:
            raise ValueError('no set can be the target ' + target.hex())
        return out


# ---------------------------------------------------------------------------------------------
# Writing C++

def c_bytes(data):
    """Sixteen bytes as a string of 32 hexadecimal digits."""
    return '"' + data.hex() + '"'


def c_string(text):
    return '"' + text.replace('\\', '\\\\').replace('"', '\\"') + '"'


def dotted(data):
    return '.'.join('%02x' % b for b in data)


def banner(registers, what):
    lines = ['// ' + what,
             '// Written by tools/generate_dictionary.py from the SMPTE metadata registers; do not edit.',
             '// Register snapshot:']
    lines += ['//   ' + s for s in registers.snapshot]
    return '\n'.join(lines) + '\n'


def write_dictionary_tables(dictionary, path):
    registers = dictionary.registers
    out = [banner(registers, 'The built-in dictionary: header metadata sets, their members, elements and types.')]
    out.append('// Included by StandardDictionary.cpp inside namespace Vellum::MetaMetadata::StandardTables.\n')
    out.append('static char const registerSnapshot[] =\n    %s;\n' % c_string('; '.join(registers.snapshot)))

    out.append('\n// Type label (hexadecimal), register symbol.\nstatic TypeRow const typeRows[] = {\n')
    for label, symbol in dictionary.types:
        out.append('    {%s, %s},\n' % (c_bytes(label), c_string(symbol)))
    out.append('};\n')

    out.append('\n// Lists of allowed reference targets, as indexes into setRows.\n'
               'static unsigned short const targetIndexes[] = {\n')
    starts = []
    position = 0
    for targets in dictionary.targets:
        starts.append(position)
        out.append('    ' + ', '.join(str(t) for t in targets) + ',\n')
        position += len(targets)
    out.append('};\n')

    out.append('\n// Label, symbol, name, type row, kind, dataType, dataSubType, first target, target count.\n'
               'static ElementRow const elementRows[] = {\n')
    for e in dictionary.elements:
        out.append('    {%s, %s, %s, %d, %s, %d, %d, %d, %d}, // %s%s\n' % (
            c_bytes(e['label']), c_string(e['symbol']), c_string(e['name']), e['type'],
            KIND_NAME[e['kind']] + 'Kind', e['dataType'], e['dataSubType'],
            starts[e['targets']] if e['targetCount'] else 0, e['targetCount'],
            ID_NAME[e['dataType']],
            ('/' + ID_NAME[e['dataSubType']]) if e['kind'] in (COLLECTION, REFERENCE_COLLECTION) else ''))
    out.append('};\n')

    out.append('\n// Element row, static local tag (0: none), optional.\nstatic MemberRow const memberRows[] = {\n')
    member_starts = []
    position = 0
    for s in dictionary.sets:
        member_starts.append(position)
        out.append('    // %s\n' % s['group']['Symbol'])
        for m in s['members']:
            out.append('    {%d, 0x%04x, %d},\n' % (dictionary.element_index[m['label']], m['tag'], 1 if m['optional'] else 0))
            position += 1
    index_start = position
    out.append('    // IndexTableSegment (tags only)\n')
    for m in dictionary.extra_members:
        out.append('    {%d, 0x%04x, %d},\n' % (dictionary.element_index[m['label']], m['tag'], 1 if m['optional'] else 0))
    out.append('};\n')
    out.append('static unsigned const tagOnlyMembersBegin = %d;\n' % index_start)
    out.append('static unsigned const tagOnlyMembersEnd = %d;\n' % (index_start + len(dictionary.extra_members)))

    out.append('\n// Key, symbol, name, concrete, first member, member count, parent row (-1: none).\n'
               'static SetRow const setRows[] = {\n')
    for s, start in zip(dictionary.sets, member_starts):
        out.append('    {%s, %s, %s, %d, %d, %d, %d},\n' % (
            c_bytes(s['key']), c_string(s['group']['Symbol']), c_string(s['group']['Name']),
            1 if s['concrete'] else 0, start, len(s['members']), s['parent']))
    out.append('};\n')
    write_file(path, ''.join(out))


def write_constants_table(registers, constants, path):
    out = [banner(registers, 'Values of the named keys and labels, one list for each namespace.')]
    out.append('// Each list expands X(name, 16 bytes) once for each constant.\n')
    for namespace, cls, macro, entries in constants:
        out.append('\n// %s (%s)\n#define VELLUM_%s(X) \\\n' % (namespace, cls, macro))
        lines = []
        for name, value, symbol in entries:
            lines.append('    X(%s, %s) /* %s */' % (name, ', '.join('0x%02x' % b for b in value),
                                                       symbol or 'not in the registers'))
        out.append(' \\\n'.join(lines) + '\n')
    write_file(path, ''.join(out))


def write_test_table(dictionary, constants, path):
    registers = dictionary.registers
    out = [banner(registers, 'What the tests check the library against, taken from the registers directly.')]
    out.append('// Included by the tests of the built-in dictionary and of the named constants.\n')

    out.append('\n// Named constants: the function, its qualified name, the register value in dotted form.\n')
    for kind in ('KLV::Key', 'Types::UniversalLabel'):
        array = 'namedKeys' if kind == 'KLV::Key' else 'namedLabels'
        row = 'NamedKeyRow' if kind == 'KLV::Key' else 'NamedLabelRow'
        out.append('static %s const %s[] = {\n' % (row, array))
        for namespace, cls, macro, entries in constants:
            if cls != kind:
                continue
            for name, value, symbol in entries:
                out.append('    {&%s::%s, "%s::%s", "%s"},\n' % (namespace, name, namespace, name, dotted(value)))
        out.append('};\n')

    # Register facts for a few sets, in the register's own terms: members with their tags,
    # straight from the group entries and their parents.
    checked = ('Preface', 'SourcePackage', 'TimelineTrack', 'Sequence', 'SourceClip',
               'CDCIDescriptor', 'WAVEPCMDescriptor', 'MPEGVideoDescriptor')
    out.append('\n// Registered sets: key, member labels with their static tags (0: none) and optionality.\n')
    for symbol in checked:
        group = registers.group_by_symbol(symbol)
        out.append('static RegisteredMember const members%s[] = {\n' % symbol)
        for g in reversed(registers.ancestry(group)):
            for record in g.get('Contents', []):
                tag = record.get('LocalTag') or '0'
                out.append('    {"%s", 0x%04x, %s}, // %s\n' % (
                    dotted(label_bytes(record['UL'])), int(tag, 16),
                    'true' if record.get('IsOptional', 'true') != 'false' else 'false',
                    registers.elements[label_bytes(record['UL'])]['Symbol']))
        out.append('};\n')
    out.append('static RegisteredSet const registeredSets[] = {\n')
    for symbol in checked:
        group = registers.group_by_symbol(symbol)
        key = bytearray(label_bytes(group['UL']))
        key[5] = 0x53
        out.append('    {"%s", "%s", members%s, sizeof(members%s) / sizeof(members%s[0])},\n' % (
            symbol, dotted(key), symbol, symbol, symbol))
    out.append('};\n')

    out.append('\n// Every statically assigned tag of the header metadata and index table sets.\n'
               'static RegisteredTag const registeredTags[] = {\n')
    for tag in sorted(dictionary.tags):
        out.append('    {0x%04x, "%s"},\n' % (tag, dotted(dictionary.tags[tag])))
    out.append('};\n')
    out.append('static unsigned const registeredSetCount = %d;\n' % len(dictionary.sets))
    out.append('static unsigned const registeredElementCount = %d;\n' % len(dictionary.elements))
    write_file(path, ''.join(out))


def write_file(path, text):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, 'w', newline='\n') as stream:
        stream.write(text)
    print('wrote %s (%d bytes)' % (path, len(text)))


def main():
    here = os.path.dirname(os.path.abspath(__file__))
    root = os.path.dirname(here)
    parser = argparse.ArgumentParser(description=__doc__.split('\n')[0])
    parser.add_argument('--registers', default=os.path.join(root, '..', 'shared', 'registers'))
    parser.add_argument('--root', default=root)
    parser.add_argument('--report', action='store_true', help='list the sets and element types')
    arguments = parser.parse_args()

    registers = Registers(arguments.registers)
    dictionary = Dictionary(registers)
    constants = ConstantResolver(registers).all()

    if arguments.report:
        for s in dictionary.sets:
            print('%s %s%s' % (dotted(s['key']), s['group']['Symbol'], '' if s['concrete'] else ' (abstract)'))
            for m in s['members']:
                e = dictionary.elements[dictionary.element_index[m['label']]]
                print('    %04x %-40s %-12s %s%s%s' % (
                    m['tag'], e['symbol'], KIND_NAME[e['kind']], ID_NAME[e['dataType']],
                    ('/' + ID_NAME[e['dataSubType']]) if e['kind'] >= COLLECTION else '',
                    '' if m['optional'] else ' required'))

    write_dictionary_tables(dictionary, os.path.join(arguments.root, 'src', 'MetaMetadata', 'StandardDictionaryTables.inc'))
    write_constants_table(registers, constants, os.path.join(arguments.root, 'src', 'Metadata', 'NamedConstantsTable.inc'))
    write_test_table(dictionary, constants, os.path.join(arguments.root, 'tests', 'MetaMetadata', 'StandardRegisterTestTable.inc'))
    print('%d sets, %d elements, %d static tags, %d types' % (
        len(dictionary.sets), len(dictionary.elements), len(dictionary.tags), len(dictionary.types)))
    return 0


if __name__ == '__main__':
    sys.exit(main())
