#include "Exceptions/Exceptions.h"

#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "Utils/Text.h"

using namespace Vellum;
using namespace Vellum::Exceptions;

namespace
{
std::string narrow(unsigned short const * text)
{
    return Utils::narrow(text).c_str();
}

std::string expectedWhat(char const * className, int line, char const * message)
{
    return std::string("Exception 'Vellum::Exceptions::") + className + "' (" + __FILE__ + ":" +
           std::to_string(line) + "): " + message;
}

template <class E>
void expectCode(int code, char const * name)
{
    E e("message", "file.cpp", 1);
    BaseException const & base = e;
    EXPECT_EQ(code, base.errorCode()) << name;
    EXPECT_EQ(int(E::ERROR_CODE), code) << name;
    EXPECT_EQ(std::string("Exception 'Vellum::Exceptions::") + name + "' (file.cpp:1): message", std::string(base.whatUtf8().c_str()))
        << name;
}
} // namespace

TEST(ExceptionsTest, ErrorCodesAndClassNames)
{
#define VELLUM_EXPECT_CODE(Name, Code) expectCode<Name>(Code, #Name)
    VELLUM_EXPECT_CODE(BadAlloc, 2); VELLUM_EXPECT_CODE(BrokenLink, 3); VELLUM_EXPECT_CODE(IndexOutOfBounds, 4);
    VELLUM_EXPECT_CODE(InvalidChange, 5); VELLUM_EXPECT_CODE(InvalidElement, 6);
    VELLUM_EXPECT_CODE(InvalidElementLength, 7); VELLUM_EXPECT_CODE(InvalidFormat, 8);
    VELLUM_EXPECT_CODE(InvalidID, 9); VELLUM_EXPECT_CODE(InvalidIndexSegment, 10);
    VELLUM_EXPECT_CODE(InvalidPosition, 12); VELLUM_EXPECT_CODE(InvalidLocalTag, 13);
    VELLUM_EXPECT_CODE(InvalidKey, 14); VELLUM_EXPECT_CODE(InvalidMetaAttribute, 15);
    VELLUM_EXPECT_CODE(InvalidValue, 16); VELLUM_EXPECT_CODE(AlreadySet, 17);
    VELLUM_EXPECT_CODE(InvalidMetadataSet, 18); VELLUM_EXPECT_CODE(InvalidMetaElement, 19);
    VELLUM_EXPECT_CODE(InvalidPartitionKind, 21); VELLUM_EXPECT_CODE(InvalidPartitionStatus, 22);
    VELLUM_EXPECT_CODE(InvalidStructure, 23); VELLUM_EXPECT_CODE(KeyNotFound, 24); VELLUM_EXPECT_CODE(IOError, 26);
    VELLUM_EXPECT_CODE(LocalTagNotFound, 27); VELLUM_EXPECT_CODE(MetadataSetReferenceNotAllowed, 28);
    VELLUM_EXPECT_CODE(NoFactory, 29); VELLUM_EXPECT_CODE(NotEnoughData, 30); VELLUM_EXPECT_CODE(NotFound, 31);
    VELLUM_EXPECT_CODE(NotFoundInPrimer, 32); VELLUM_EXPECT_CODE(UniversalLabelCollision, 34);
    VELLUM_EXPECT_CODE(InvalidLabel, 35); VELLUM_EXPECT_CODE(NotImplemented, 37);
    VELLUM_EXPECT_CODE(InvalidLength, 39); VELLUM_EXPECT_CODE(InvalidType, 40); VELLUM_EXPECT_CODE(OSError, 41);
    VELLUM_EXPECT_CODE(OperationNotAllowed, 42); VELLUM_EXPECT_CODE(InvalidState, 43);
#undef VELLUM_EXPECT_CODE
}

TEST(ExceptionsTest, WhatIsComposedOnceAndKept)
{
    int line = __LINE__ + 3;
    try
    {
        throw InvalidValue("Cannot set in this index", __FILE__, __LINE__);
    }
    catch (BaseException const & e)
    {
        EXPECT_EQ(expectedWhat("InvalidValue", line, "Cannot set in this index"), narrow(e.what()));
        unsigned short const * first = e.what();
        EXPECT_EQ(first, e.what());
        EXPECT_EQ("Cannot set in this index", narrow(e.message()));
        EXPECT_EQ(__FILE__, narrow(e.filename()));
        EXPECT_EQ(line, e.lineNumber());
        EXPECT_EQ(16, e.errorCode());
    }

    // Empty message, in each constructor that allows one.
    for (NotFound const & empty : {NotFound("a.cpp", 7), NotFound(static_cast<char const *>(nullptr), "a.cpp", 7),
                                   NotFound("", "a.cpp", 7)})
        EXPECT_EQ("Exception 'Vellum::Exceptions::NotFound' (a.cpp:7): ", empty.whatUtf8());
    EXPECT_EQ("", narrow(NotFound("a.cpp", 7).message()));

    // 16-bit messages keep characters beyond ASCII.
    Templates::wstring wide = Utils::wide("Fichier « été » 日本");
    IOError io(wide.c_str(), "Platform/Platform.cpp", -3);
    EXPECT_EQ("Exception 'Vellum::Exceptions::IOError' (Platform/Platform.cpp:-3): Fichier « été » 日本",
              io.whatUtf8());
    EXPECT_TRUE(Templates::wstring(io.message()) == wide);

    // Changing the place recomposes the text.
    InvalidKey key("The key is not a PartitionPack key", "x.cpp", 1);
    key.whatUtf8();
    key.filename("Packs/PartitionPack.cpp");
    key.lineNumber(88);
    EXPECT_EQ("Packs/PartitionPack.cpp", narrow(key.filename()));
    EXPECT_EQ(88, key.lineNumber());
    EXPECT_EQ("Exception 'Vellum::Exceptions::InvalidKey' (Packs/PartitionPack.cpp:88): The key is not a "
              "PartitionPack key",
              key.whatUtf8());
}

TEST(ExceptionsTest, CopiesOwnTheirText)
{
    InvalidFormat * original = new InvalidFormat("Invalid BER size", "KLV/Reader.cpp", 12);
    unsigned short const * originalWhat = original->what();
    InvalidFormat copy(*original);
    InvalidFormat assigned("other", "o.cpp", 1);
    assigned.what();
    assigned = *original;
    delete original;
    EXPECT_NE(originalWhat, copy.what());
    EXPECT_EQ("Exception 'Vellum::Exceptions::InvalidFormat' (KLV/Reader.cpp:12): Invalid BER size", copy.whatUtf8());
    EXPECT_EQ("Invalid BER size", narrow(copy.message()));
    EXPECT_EQ("Exception 'Vellum::Exceptions::InvalidFormat' (KLV/Reader.cpp:12): Invalid BER size",
              assigned.whatUtf8());
    assigned = assigned;
    EXPECT_EQ("Invalid BER size", narrow(assigned.message()));

    // Thrown by value, caught by reference to the base: the most derived class still speaks.
    try
    {
        throw copy;
    }
    catch (BaseException const & e)
    {
        EXPECT_EQ(8, e.errorCode());
        EXPECT_EQ("Exception 'Vellum::Exceptions::InvalidFormat' (KLV/Reader.cpp:12): Invalid BER size", std::string(e.whatUtf8().c_str()));
    }
}

TEST(ExceptionsTest, CheckMacros)
{
    int berLength = 12;
    int line = __LINE__ + 3;
    try
    {
        THROW_UNLESS(InvalidFormat, berLength <= 9,
                     "Invalid BER length. Please refer to S377M, heading 5.3.4 for more details.");
        ADD_FAILURE() << "no throw";
    }
    catch (InvalidFormat const & e)
    {
        EXPECT_EQ("berLength <= 9: Invalid BER length. Please refer to S377M, heading 5.3.4 for more details.",
                  narrow(e.message()));
        EXPECT_EQ(expectedWhat("InvalidFormat", line,
                               "berLength <= 9: Invalid BER length. Please refer to S377M, heading 5.3.4 for more "
                               "details."),
                  std::string(e.whatUtf8().c_str()));
    }
    EXPECT_NO_THROW(THROW_UNLESS(InvalidFormat, berLength > 9, "never"));

    // The condition is evaluated once.
    int evaluations = 0;
    EXPECT_NO_THROW(THROW_UNLESS(InvalidValue, ++evaluations > 0, "never"));
    EXPECT_EQ(1, evaluations);

    // A 16-bit message and an explicit condition text.
    void * header = nullptr;
    try
    {
        THROW_UNLESS_TEXT(IOError, header != nullptr, "header != 0", Utils::wide("No header partition found"));
        ADD_FAILURE() << "no throw";
    }
    catch (IOError const & e)
    {
        EXPECT_EQ("header != 0: No header partition found", narrow(e.message()));
        EXPECT_EQ(26, e.errorCode());
    }

    // A plain throw: the message stands alone.
    line = __LINE__ + 3;
    try
    {
        VELLUM_THROW(NotImplemented, "Not implemented");
    }
    catch (NotImplemented const & e)
    {
        EXPECT_EQ(expectedWhat("NotImplemented", line, "Not implemented"), std::string(e.whatUtf8().c_str()));
    }
    try
    {
        VELLUM_THROW(NotFound, Utils::wide("BodySid not found: ") + Utils::decimal(3));
    }
    catch (NotFound const & e)
    {
        EXPECT_EQ("BodySid not found: 3", narrow(e.message()));
    }
}

TEST(ExceptionsTest, InvalidLengthKeepsTheDataRead)
{
    unsigned char const bytes[] = {0x06, 0x0e, 0x2b, 0x34, 0x00};
    InvalidLength * original = new InvalidLength(bytes, 4, "Invalid data size in Value", "Types/Value.cpp", 5);
    EXPECT_EQ(4u, original->readDataLength());
    ASSERT_NE(nullptr, original->readData());
    EXPECT_NE(bytes, original->readData());
    EXPECT_EQ(0, std::memcmp(bytes, original->readData(), 4));
    EXPECT_EQ(39, original->errorCode());
    EXPECT_EQ("Exception 'Vellum::Exceptions::InvalidLength' (Types/Value.cpp:5): Invalid data size in Value",
              original->whatUtf8());

    InvalidLength copy(*original);
    InvalidLength assigned("Not enough data", "a.cpp", 1);
    assigned = *original;
    delete original;
    ASSERT_EQ(4u, copy.readDataLength());
    EXPECT_EQ(0, std::memcmp(bytes, copy.readData(), 4));
    ASSERT_EQ(4u, assigned.readDataLength());
    EXPECT_EQ(0, std::memcmp(bytes, assigned.readData(), 4));
    EXPECT_NE(copy.readData(), assigned.readData());
    EXPECT_EQ("Invalid data size in Value", narrow(assigned.message()));

    // No data: a null pointer and a count of 0.
    InvalidLength none(bytes, 0, "Not enough data", "a.cpp", 1);
    EXPECT_EQ(nullptr, none.readData());
    EXPECT_EQ(0u, none.readDataLength());
    InvalidLength nullData(nullptr, 10, "Not enough data", "a.cpp", 1);
    EXPECT_EQ(nullptr, nullData.readData());
    EXPECT_EQ(0u, nullData.readDataLength());

    try
    {
        throw InvalidLength(bytes, 2, "Not enough data", "a.cpp", 2);
    }
    catch (BaseException const & e)
    {
        InvalidLength const * length = dynamic_cast<InvalidLength const *>(&e);
        ASSERT_NE(nullptr, length);
        EXPECT_EQ(2u, length->readDataLength());
        EXPECT_EQ(39, e.errorCode());
    }
}
