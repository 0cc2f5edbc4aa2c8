#!/usr/bin/env python3
"""Writes the typed accessors of the structural metadata classes.

Reads the tables of the built-in dictionary that tools/generate_dictionary.py writes
(src/MetaMetadata/StandardDictionaryTables.inc and src/Metadata/NamedConstantsTable.inc) and
writes, for every class of Metadata::Structural:

  include/Metadata/Structural/<Class>.h              the class with one accessor group per label
  src/Metadata/Structural/Accessors/<Class>.cpp      constructors, accept and the accessors
  include/Metadata/Structural/StructuralClasses.h    every class header at once
  src/Metadata/Structural/Accessors/Creators.inc     the set factory's creators of the concrete classes

A class gets an accessor group for each label of StructuralMetadataULs that its set description
holds and that its base class's description does not. Run it by hand after the dictionary tables
change; the output is committed:

  python3 tools/generate_structural.py [--root DIR] [--report]
"""

import argparse
import os
import re
import sys

# ---------------------------------------------------------------------------------------------
# The class tree. (class, base, register set symbol for a class without a key of its own,
# StructuralMetadataKeys name for a concrete class)

CLASSES = [
    ('TrackableMetadataSet', 'MetadataSet', 'InterchangeObject', None),
    ('Identification', 'MetadataSet', None, 'identification'),
    ('Preface', 'TrackableMetadataSet', None, 'preface'),
    ('ContentStorage', 'TrackableMetadataSet', None, 'contentStorage'),
    ('EssenceContainerData', 'TrackableMetadataSet', None, 'essenceContainerData'),
    ('GenericPackage', 'TrackableMetadataSet', 'Package', None),
    ('Track', 'TrackableMetadataSet', 'Track', None),
    ('Sequence', 'TrackableMetadataSet', None, 'sequence'),
    ('StructuralComponent', 'TrackableMetadataSet', 'Component', None),
    ('GenericDescriptor', 'TrackableMetadataSet', 'EssenceDescriptor', None),
    ('SubDescriptor', 'TrackableMetadataSet', 'SubDescriptor', None),
    ('Locator', 'TrackableMetadataSet', 'Locator', None),
    ('UnknownChunkSet', 'TrackableMetadataSet', None, 'unknownChunkSet'),
    ('MaterialPackage', 'GenericPackage', None, 'materialPackage'),
    ('SourcePackage', 'GenericPackage', None, 'sourcePackage'),
    ('TimelineTrack', 'Track', None, 'timelineTrack'),
    ('EventTrack', 'Track', None, 'eventTrack'),
    ('StaticTrack', 'Track', None, 'staticTrack'),
    ('SourceClip', 'StructuralComponent', None, 'sourceClip'),
    ('DMSegment', 'StructuralComponent', None, 'dmSegment'),
    ('TimecodeComponent', 'StructuralComponent', None, 'timecodeComponent'),
    ('DMSourceClip', 'SourceClip', None, 'dmSourceClip'),
    ('FileDescriptor', 'GenericDescriptor', None, 'fileDescriptor'),
    ('PhysicalDescriptor', 'GenericDescriptor', 'PhysicalDescriptor', None),
    ('GenericPictureEssenceDescriptor', 'FileDescriptor', None, 'genericPictureEssenceDescriptor'),
    ('GenericSoundEssenceDescriptor', 'FileDescriptor', None, 'genericSoundEssenceDescriptor'),
    ('GenericDataEssenceDescriptor', 'FileDescriptor', None, 'genericDataEssenceDescriptor'),
    ('MultipleDescriptor', 'FileDescriptor', None, 'multipleDescriptor'),
    ('SMPTE331MTimeDateItemDescriptor', 'FileDescriptor', None, 'smpte331MTimeDateItemDescriptor'),
    ('CDCIEssenceDescriptor', 'GenericPictureEssenceDescriptor', None, 'cdciEssenceDescriptor'),
    ('RGBAEssenceDescriptor', 'GenericPictureEssenceDescriptor', None, 'rgbaEssenceDescriptor'),
    ('MPEG2VideoDescriptor', 'CDCIEssenceDescriptor', None, 'mpeg2VideoDescriptor'),
    ('WAVEAudioEssenceDescriptor', 'GenericSoundEssenceDescriptor', None, 'waveAudioEssenceDescriptor'),
    ('AES3AudioEssenceDescriptor', 'WAVEAudioEssenceDescriptor', None, 'aes3AudioEssenceDescriptor'),
    ('ANCPacketsDescriptor', 'GenericDataEssenceDescriptor', None, 'ancPacketsDescriptor'),
    ('VBIDataDescriptor', 'GenericDataEssenceDescriptor', None, 'vbiDataDescriptor'),
    ('JPEG2000PictureSubDescriptor', 'SubDescriptor', None, 'jpeg2000PictureSubDescriptor'),
    ('NetworkLocator', 'Locator', None, 'networkLocator'),
    ('TextLocator', 'Locator', None, 'textLocator'),
    ('WAVEAudioPhysicalDescriptor', 'PhysicalDescriptor', None, 'waveAudioPhysicalDescriptor'),
]

# What a class says of itself, in its header's opening comment.
SUMMARIES = {
    'TrackableMetadataSet': 'A set that carries the Generation UID of the Identification that last changed it.',
    'Identification': 'Who wrote or changed the file: company, product, versions, platform and date.',
    'Preface': 'The root of the header metadata: content storage, identifications, operational pattern and essence containers.',
    'ContentStorage': 'Holds the packages and the essence container data of the file.',
    'EssenceContainerData': 'Ties an essence container (body SID, index SID) to the source package that describes it.',
    'GenericPackage': 'What Material and Source Packages share: package UID, name, dates and tracks.',
    'Track': 'One track of a package: its ID, number, name and sequence.',
    'Sequence': 'The structural components of a track, one after the other.',
    'StructuralComponent': 'What every component of a sequence has: data definition and duration.',
    'GenericDescriptor': 'What every essence descriptor has: locators and sub-descriptors.',
    'SubDescriptor': 'A descriptor that adds to another descriptor.',
    'Locator': 'Where essence outside the file is found.',
    'UnknownChunkSet': 'A RIFF chunk of a Wave file that the descriptor keeps as it is.',
    'MaterialPackage': 'The package that the output timeline is made of.',
    'SourcePackage': 'The package that describes stored essence, with its descriptor.',
    'TimelineTrack': 'A track with an edit rate and an origin.',
    'EventTrack': 'A track of events at an edit rate of its own.',
    'StaticTrack': 'A track without time.',
    'SourceClip': 'A stretch of a track of another package.',
    'DMSegment': 'A segment of descriptive metadata over a stretch of the described tracks.',
    'TimecodeComponent': 'Continuous time code: its start, its frame rate and drop frame.',
    'DMSourceClip': 'A source clip on a descriptive metadata track.',
    'FileDescriptor': 'Describes the essence of a file: sample rate, length, container and linked track.',
    'PhysicalDescriptor': 'Describes the physical source of essence.',
    'GenericPictureEssenceDescriptor': 'Describes picture essence: sizes, layout, aspect ratio and coding.',
    'GenericSoundEssenceDescriptor': 'Describes sound essence: sampling rate, channels, bits and coding.',
    'GenericDataEssenceDescriptor': 'Describes data essence and its coding.',
    'MultipleDescriptor': 'Describes several essence streams interleaved in one container, one sub-descriptor each.',
    'SMPTE331MTimeDateItemDescriptor': 'Describes the date and time item of an SMPTE 331M system item.',
    'CDCIEssenceDescriptor': 'Describes colour difference picture essence.',
    'RGBAEssenceDescriptor': 'Describes RGBA picture essence.',
    'MPEG2VideoDescriptor': 'Describes MPEG-2 video essence.',
    'WAVEAudioEssenceDescriptor': 'Describes Wave PCM audio essence with its Broadcast Wave fields.',
    'AES3AudioEssenceDescriptor': 'Describes AES3 audio essence with its channel status and user data.',
    'ANCPacketsDescriptor': 'Describes ANC packets carried as data essence.',
    'VBIDataDescriptor': 'Describes VBI lines carried as data essence.',
    'JPEG2000PictureSubDescriptor': 'Adds the JPEG 2000 codestream parameters to a picture descriptor.',
    'NetworkLocator': 'Locates essence by a URL.',
    'TextLocator': 'Locates essence by a name meant for people.',
    'WAVEAudioPhysicalDescriptor': 'Describes the Wave file that audio essence was imported from.',
}

# Accessors that are virtual, in this order, setter before getter.
VIRTUALS = {
    'Track': ['trackID', 'trackNumber', 'trackName', 'sequence'],
    'TimelineTrack': ['editRate', 'origin'],
}

# Labels that get no generated accessor in any class: the instance UID is MetadataSet's own.
SKIPPED = {'instanceUID'}

# The class that a reference's getter narrows its target to; MetadataSet for the rest.
REFERENCE_TARGETS = {
    'contentStorage': 'ContentStorage', 'primaryPackage': 'GenericPackage',
    'identificationList': 'Identification', 'packages': 'GenericPackage',
    'essenceContainerData': 'EssenceContainerData', 'tracks': 'Track', 'sequence': 'Sequence',
    'structuralComponents': 'StructuralComponent', 'descriptor': 'GenericDescriptor',
    'locators': 'Locator', 'subDescriptors': 'SubDescriptor',
    'subDescriptorUIDs': 'GenericDescriptor', 'unknownBWFChunks': 'UnknownChunkSet',
}

# Names of the member accessors of a collection: (one member, the whole, capitalised member).
COLLECTION_NAMES = {
    'identificationList': ('identification', 'identifications', 'Identification'),
    'dmSchemes': ('dmScheme', 'dmSchemes', 'DMScheme'),
    'essenceContainerData': ('essenceContainerData', 'essenceContainerData', 'EssenceContainerData'),
    'subDescriptorUIDs': ('subDescriptorUID', 'subDescriptorUIDs', 'SubDescriptorUID'),
    'dmSegmentTrackIDs': ('dmSegmentTrackID', 'dmSegmentTrackIDs', 'DMSegmentTrackID'),
    'dmSourceClipTrackIDs': ('dmSourceClipTrackID', 'dmSourceClipTrackIDs', 'DMSourceClipTrackID'),
    'unknownBWFChunks': ('unknownBWFChunk', 'unknownBWFChunks', 'UnknownBWFChunk'),
}

# Hand-written members, declared in the generated class and defined in
# src/Metadata/Structural/<Class>.cpp.
EXTRA_DECLARATIONS = {
    'TrackableMetadataSet': [
        '// The Generation UID, or null.',
        'virtual Types::UUID const * generation() const;',
        "// Sets the Generation UID to the identification's thisGenerationUID; null clears it.",
        'virtual void generation(Identification * identification);',
    ],
    'ContentStorage': [
        '// The package whose packageUID is `packageUID`, or null.',
        'GenericPackage * package(Types::UMID32 const & packageUID) const;',
        '// The Essence Container Data whose linkedPackageUID is `linkedPackageUID`, or null.',
        'EssenceContainerData * essenceContainerData(Types::UMID32 const & linkedPackageUID) const;',
    ],
    'GenericPackage': [
        '// The track whose trackID is `trackID`, or null.',
        'Track * track(Types::UInt32 const & trackID) const;',
    ],
    'EssenceContainerData': [
        '// The package whose packageUID is the linkedPackageUID, or null.',
        'GenericPackage * linkedPackage() const;',
    ],
}
EXTRA_FORWARDS = {
    'TrackableMetadataSet': ['Identification'],
    'ContentStorage': ['GenericPackage', 'EssenceContainerData'],
    'GenericPackage': ['Track'],
    'EssenceContainerData': ['GenericPackage'],
}
EXTRA_TYPES = {
    'TrackableMetadataSet': ['UUID'],
    'ContentStorage': ['UMID32'],
    'GenericPackage': ['UInt32'],
}

# ---------------------------------------------------------------------------------------------
# Value types by identifier: (class in Types, header)

TYPES = {
    2: ('Boolean', 'Types/Boolean.h'), 3: ('DataStream', 'Types/DataStream.h'),
    5: ('Int16', 'Types/Integers.h'), 6: ('Int32', 'Types/Integers.h'), 7: ('Int64', 'Types/Integers.h'),
    8: ('Int8', 'Types/Integers.h'), 9: ('ISO7String', 'Types/ISO7String.h'),
    10: ('UniversalLabel', 'Types/UniversalLabel.h'), 11: ('Length', 'Types/Integers.h'),
    12: ('LocalTag', 'Types/LocalTag.h'), 13: ('Position', 'Types/Integers.h'),
    14: ('ProductVersion', 'Types/ProductVersion.h'), 15: ('Rational', 'Types/Rational.h'),
    16: ('Timestamp', 'Types/Timestamp.h'), 17: ('UInt16', 'Types/Integers.h'),
    18: ('UInt32', 'Types/Integers.h'), 19: ('UInt64', 'Types/Integers.h'),
    20: ('UInt8', 'Types/Integers.h'), 21: ('UMID32', 'Types/UMID.h'), 22: ('UMID64', 'Types/UMID.h'),
    23: ('UniversalLabel', 'Types/UniversalLabel.h'), 24: ('Unknown', 'Types/Unknown.h'),
    25: ('UTF16', 'Types/UTF16.h'), 26: ('UTF16String', 'Types/UTF16String.h'),
    27: ('UUID', 'Types/UUID.h'), 28: ('VersionType', 'Types/VersionType.h'),
    33: ('Orientation', 'Types/Orientation.h'), 34: ('RGBALayout', 'Types/RGBALayout.h'),
    35: ('SignalStandard', 'Types/SignalStandard.h'), 36: ('DataValue', 'Types/DataValue.h'),
    37: ('J2KPictureComponent', 'Types/J2KParameters.h'),
    38: ('J2KCodingStyleDefault', 'Types/J2KParameters.h'),
    39: ('J2KQuantisationDefault', 'Types/J2KParameters.h'),
}
ARRAY, BATCH = 0, 1
SIMPLE, REFERENCE, COLLECTION, REFERENCE_COLLECTION = 'SimpleKind', 'ReferenceKind', 'CollectionKind', 'ReferenceCollectionKind'

# ---------------------------------------------------------------------------------------------
# Reading the dictionary tables


def block(text, start):
    begin = text.index(start)
    return text[begin:text.index('};', begin)]


def read_tables(root):
    with open(os.path.join(root, 'src', 'MetaMetadata', 'StandardDictionaryTables.inc')) as stream:
        tables = stream.read()
    elements = []
    for m in re.finditer(r'\{"([0-9a-f]{32})", "(\w+)", "(?:[^"\\]|\\.)*", (\d+), (\w+), (\d+), (\d+), (\d+), (\d+)\}',
                         block(tables, 'static ElementRow const elementRows[]')):
        elements.append({'label': m.group(1), 'symbol': m.group(2), 'kind': m.group(4),
                         'dataType': int(m.group(5)), 'dataSubType': int(m.group(6))})
    members = [int(m.group(1)) for m in re.finditer(r'\{(\d+), 0x[0-9a-f]{4}, \d\}',
                                                       block(tables, 'static MemberRow const memberRows[]'))]
    sets = []
    for m in re.finditer(r'\{"([0-9a-f]{32})", "(\w+)", "(?:[^"\\]|\\.)*", (\d), (\d+), (\d+)\}',
                         block(tables, 'static SetRow const setRows[]')):
        first, count = int(m.group(4)), int(m.group(5))
        sets.append({'key': m.group(1), 'symbol': m.group(2),
                     'labels': [elements[i]['label'] for i in members[first:first + count]]})

    with open(os.path.join(root, 'src', 'Metadata', 'NamedConstantsTable.inc')) as stream:
        constants = stream.read()

    def named(macro):
        text = constants[constants.index('#define ' + macro + '(X)'):]
        text = text[:text.index('\n\n')] if '\n\n' in text else text
        result = {}
        for m in re.finditer(r'X\((\w+), ((?:0x[0-9a-f]{2}, ){15}0x[0-9a-f]{2})\)', text):
            result[m.group(1)] = ''.join(b[2:] for b in m.group(2).split(', '))
        return result

    return ({e['label']: e for e in elements}, sets, named('VELLUM_STRUCTURAL_METADATA_KEYS'),
            named('VELLUM_STRUCTURAL_METADATA_ULS'))


# ---------------------------------------------------------------------------------------------
# The accessors of each class


def capitalised(name):
    return name[0].upper() + name[1:]


def collection_names(name):
    if name in COLLECTION_NAMES:
        return COLLECTION_NAMES[name]
    one = name[:-1] if name.endswith('s') else name
    return one, name, capitalised(one)


class Accessor:
    def __init__(self, name, element):
        self.name = name
        self.kind = element['kind']
        self.dataType = element['dataType']
        self.dataSubType = element['dataSubType']
        if self.kind == SIMPLE:
            self.type = TYPES[self.dataType]
        elif self.kind == COLLECTION:
            self.type = TYPES[self.dataSubType]
        else:
            self.target = REFERENCE_TARGETS.get(name, 'MetadataSet')
        self.virtual = False

    def headers(self):
        return [self.type[1]] if self.kind in (SIMPLE, COLLECTION) else []

    def targets(self):
        return [self.target] if self.kind in (REFERENCE, REFERENCE_COLLECTION) and self.target != 'MetadataSet' else []

    def declarations(self):
        v = 'virtual ' if self.virtual else ''
        label = 'StructuralMetadataULs::%s()' % self.name
        if self.kind == SIMPLE:
            t = 'Types::' + self.type[0]
            return ['// %s: null when empty.' % label,
                    '%svoid %s(%s const * value);' % (v, self.name, t),
                    '%s%s const * %s() const;' % (v, t, self.name)]
        if self.kind == REFERENCE:
            return ['// %s: the set referred to, or null.' % label,
                    '%svoid %s(%s const * target);' % (v, self.name, self.target),
                    '%s%s * %s() const;' % (v, self.target, self.name)]
        one, whole, cap = collection_names(self.name)
        lines = ['// %s: the members in order.' % label,
                 'unsigned int %sCount() const;' % whole]
        if self.kind == COLLECTION:
            t = 'Types::' + self.type[0]
            lines += ['%s const * %s(unsigned int index) const;' % (t, one),
                      'void append%s(%s const & value);' % (cap, t)]
            if self.dataType == ARRAY:
                lines.append('void add%s(unsigned int index, %s const & value);' % (cap, t))
        else:
            lines += ['%s * %s(unsigned int index) const;' % (self.target, one),
                      'void append%s(%s * target);' % (cap, self.target)]
            if self.dataType == ARRAY:
                lines.append('void add%s(unsigned int index, %s * target);' % (cap, self.target))
        lines.append('void remove%s(unsigned int index);' % cap)
        return lines

    def definitions(self, cls):
        label = 'StructuralMetadataULs::%s()' % self.name
        if self.kind == SIMPLE:
            t = 'Types::' + self.type[0]
            return [
                'void %s::%s(%s const * value) { Accessors::setValue<%s>(*this, %s, value); }' % (cls, self.name, t, t, label),
                '%s const * %s::%s() const { return Accessors::value<%s>(*this, %s); }' % (t, cls, self.name, t, label)]
        if self.kind == REFERENCE:
            return [
                'void %s::%s(%s const * target) { Accessors::setTarget(*this, %s, target); }' % (cls, self.name, self.target, label),
                '%s * %s::%s() const { return Accessors::target<%s>(*this, %s); }' % (self.target, cls, self.name, self.target, label)]
        one, whole, cap = collection_names(self.name)
        lines = ['unsigned int %s::%sCount() const { return Accessors::memberCount(*this, %s); }' % (cls, whole, label)]
        if self.kind == COLLECTION:
            t = 'Types::' + self.type[0]
            lines += [
                '%s const * %s::%s(unsigned int index) const { return Accessors::member<%s>(*this, %s, index); }' % (t, cls, one, t, label),
                'void %s::append%s(%s const & value) { Accessors::appendMember(*this, %s, value); }' % (cls, cap, t, label)]
            if self.dataType == ARRAY:
                lines.append('void %s::add%s(unsigned int index, %s const & value) { Accessors::insertMember(*this, %s, index, value); }' % (cls, cap, t, label))
        else:
            lines += [
                '%s * %s::%s(unsigned int index) const { return Accessors::targetAt<%s>(*this, %s, index); }' % (self.target, cls, one, self.target, label),
                'void %s::append%s(%s * target) { Accessors::appendTarget(*this, %s, target); }' % (cls, cap, self.target, label)]
            if self.dataType == ARRAY:
                lines.append('void %s::add%s(unsigned int index, %s * target) { Accessors::insertTarget(*this, %s, index, target); }' % (cls, cap, self.target, label))
        lines.append('void %s::remove%s(unsigned int index) { Accessors::removeMember(*this, %s, index); }' % (cls, cap, label))
        return lines

    def names(self):
        if self.kind in (SIMPLE, REFERENCE):
            return [self.name]
        one, whole, cap = collection_names(self.name)
        return [one, whole + 'Count', 'append' + cap, 'add' + cap, 'remove' + cap]


def build_classes(elements, sets, keys, labels):
    by_symbol = {s['symbol']: s for s in sets}
    by_key = {s['key']: s for s in sets}
    label_names = {}
    for name, label in labels.items():
        if label in label_names:
            raise SystemExit('two names for one label: %s and %s' % (label_names[label], name))
        label_names[label] = name
    bases = {c[1] for c in CLASSES}
    classes = {}
    for name, base, symbol, key_name in CLASSES:
        description = by_key[keys[key_name]] if key_name else by_symbol[symbol]
        own = set(description['labels'])
        inherited = classes[base]['all'] if base in classes else set()
        accessors = []
        for label in description['labels']:
            if label in inherited or label not in label_names or label_names[label] in SKIPPED:
                continue
            accessors.append(Accessor(label_names[label], elements[label]))
        order = VIRTUALS.get(name, [])
        for a in accessors:
            a.virtual = a.name in order
        accessors.sort(key=lambda a: (order.index(a.name) if a.name in order else len(order), a.name.lower()))
        missing = [v for v in order if v not in [a.name for a in accessors]]
        if missing:
            raise SystemExit('%s: no label for the virtual accessors %s' % (name, missing))
        classes[name] = {'name': name, 'base': base, 'key': key_name, 'is_base': name in bases,
                         'set': description['symbol'], 'all': own | inherited, 'accessors': accessors}
    # A name in a class hides the overloads of that name in its bases: none may repeat.
    for c in classes.values():
        own = {n for a in c['accessors'] for n in a.names()}
        walk = classes.get(c['base'])
        while walk:
            clash = own & {n for a in walk['accessors'] for n in a.names()}
            if clash:
                raise SystemExit('%s hides %s of %s' % (c['name'], sorted(clash), walk['name']))
            walk = classes.get(walk['base'])
    return classes


# ---------------------------------------------------------------------------------------------
# Writing

BANNER = '// Written by tools/generate_structural.py from the built-in dictionary tables; do not edit.\n'


def header_text(c, classes):
    name, base = c['name'], c['base']
    includes = set()
    forwards = set(EXTRA_FORWARDS.get(name, []))
    for a in c['accessors']:
        includes.update(a.headers())
        forwards.update(a.targets())
    for t in EXTRA_TYPES.get(name, []):
        includes.add(TYPES[[k for k, v in TYPES.items() if v[0] == t][0]][1])
    forwards.discard(name)
    base_header = 'Metadata/MetadataSet.h' if base == 'MetadataSet' else 'Metadata/Structural/%s.h' % base
    out = ['#pragma once', '// %s' % SUMMARIES[name], BANNER.rstrip(), '']
    out.append('#include "%s"' % base_header)
    for h in sorted(includes):
        out.append('#include "%s"' % h)
    out += ['', 'namespace Vellum', '{', 'namespace MetaMetadata', '{', 'class MetaMetadataSet;',
            '} // namespace MetaMetadata', '', 'namespace Metadata', '{', 'class MetadataSetOwner;', '',
            'namespace Visitors', '{', 'class MetadataSetVisitor;', 'class NonConstMetadataSetVisitor;',
            '} // namespace Visitors', '', 'namespace Structural', '{']
    for f in sorted(forwards):
        out.append('class %s;' % f)
    if forwards:
        out.append('')
    out += ['// Described by the set %s.' % c['set'],
            'class %s : public %s' % (name, base), '{', 'public:', '    VELLUM_CLASS_ALLOCATION']
    if c['key']:
        out.append('    // An empty set of key StructuralMetadataKeys::%s(); `metaMetadataSet` must describe that key.' % c['key'])
        out.append('    %s(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);' % name)
    out.append('    ~%s() override;' % name)
    if c['key']:
        out += ['', '    void accept(Visitors::NonConstMetadataSetVisitor & visitor) override;',
                '    void accept(Visitors::MetadataSetVisitor & visitor) const override;']
    if c['accessors']:
        out.append('')
    for a in c['accessors']:
        for line in a.declarations():
            out.append('    ' + line)
    extra = EXTRA_DECLARATIONS.get(name)
    if extra:
        out.append('')
        out += ['    ' + line for line in extra]
    if c['is_base']:
        out += ['', 'protected:',
                '    %s(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner);' % name]
    out += ['', 'private:', '    %s(%s const &) = delete;' % (name, name),
            '    %s & operator=(%s const &) = delete;' % (name, name), '};',
            '} // namespace Structural', '} // namespace Metadata', '} // namespace Vellum', '']
    return '\n'.join(out)


def source_text(c, classes):
    name, base = c['name'], c['base']
    out = ['// The constructors, visits and accessors of %s.' % name, BANNER.rstrip(), '',
           '#include "Metadata/Structural/%s.h"' % name, '']
    targets = set()
    for a in c['accessors']:
        targets.update(a.targets())
    for t in sorted(targets - {name}):
        out.append('#include "Metadata/Structural/%s.h"' % t)
    out += ['#include "Metadata/Structural/StructuralMetadataKeys.h"',
            '#include "Metadata/Structural/StructuralMetadataULs.h"',
            '#include "Metadata/MetadataSetVisitor.h"',
            '#include "Metadata/Structural/Accessors.h"', '',
            'namespace Vellum', '{', 'namespace Metadata', '{', 'namespace Structural', '{']
    if c['key']:
        out += ['%s::%s(MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)' % (name, name),
                '    : %s(StructuralMetadataKeys::%s(), metaMetadataSet, owner)' % (base, c['key']), '{', '}', '']
    if c['is_base']:
        out += ['%s::%s(KLV::Key const & key, MetaMetadata::MetaMetadataSet const * metaMetadataSet, MetadataSetOwner * owner)' % (name, name),
                '    : %s(key, metaMetadataSet, owner)' % base, '{', '}', '']
    out += ['%s::~%s() {}' % (name, name), '']
    if c['key']:
        out += ['void %s::accept(Visitors::NonConstMetadataSetVisitor & visitor) { visitor.visit(*this); }' % name,
                'void %s::accept(Visitors::MetadataSetVisitor & visitor) const { visitor.visit(*this); }' % name, '']
    for a in c['accessors']:
        out += a.definitions(name)
        out.append('')
    out += ['} // namespace Structural', '} // namespace Metadata', '} // namespace Vellum', '']
    return '\n'.join(out)


def umbrella_text(classes):
    out = ['#pragma once', '// Every structural metadata class.', BANNER.rstrip(), '']
    for name, _, _, _ in CLASSES:
        out.append('#include "Metadata/Structural/%s.h"' % name)
    return '\n'.join(out) + '\n'


def creators_text(classes):
    out = ['// The creators of the concrete structural classes for the metadata set factory.', BANNER.rstrip(),
           '// Each row expands X(class, StructuralMetadataKeys name).', '#define VELLUM_STRUCTURAL_CREATORS(X) \\']
    rows = ['    X(%s, %s)' % (c[0], c[3]) for c in CLASSES if c[3]]
    out.append(' \\\n'.join(rows))
    return '\n'.join(out) + '\n'


def write_file(path, text):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    old = None
    if os.path.exists(path):
        with open(path) as stream:
            old = stream.read()
    if old != text:
        with open(path, 'w') as stream:
            stream.write(text)


def main():
    here = os.path.dirname(os.path.abspath(__file__))
    parser = argparse.ArgumentParser(description=__doc__.split('\n')[0])
    parser.add_argument('--root', default=os.path.dirname(here))
    parser.add_argument('--report', action='store_true', help='list the accessors of each class')
    arguments = parser.parse_args()
    root = arguments.root

    elements, sets, keys, labels = read_tables(root)
    classes = build_classes(elements, sets, keys, labels)
    if arguments.report:
        for name, _, _, _ in CLASSES:
            c = classes[name]
            print('%s : %s (%s)' % (name, c['base'], c['set']))
            for a in c['accessors']:
                detail = a.type[0] if a.kind in (SIMPLE, COLLECTION) else a.target
                print('    %-28s %-24s %s%s' % (a.name, a.kind, detail, ' virtual' if a.virtual else ''))
    count = 0
    for name, _, _, _ in CLASSES:
        c = classes[name]
        write_file(os.path.join(root, 'include', 'Metadata', 'Structural', name + '.h'), header_text(c, classes))
        write_file(os.path.join(root, 'src', 'Metadata', 'Structural', 'Accessors', name + '.cpp'), source_text(c, classes))
        count += len(c['accessors'])
    write_file(os.path.join(root, 'include', 'Metadata', 'Structural', 'StructuralClasses.h'), umbrella_text(classes))
    write_file(os.path.join(root, 'src', 'Metadata', 'Structural', 'Accessors', 'Creators.inc'), creators_text(classes))
    print('%d classes, %d accessor groups' % (len(CLASSES), count))
    return 0


if __name__ == '__main__':
    sys.exit(main())
