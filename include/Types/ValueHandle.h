#pragma once
// The members that every simple value class has: it is a handle on a private Impl that holds the
// value's bytes in wire order.

#include "Templates/AutoPtr.h"
#include "Types/SimpleDataType.h"

// Declares copy and assignment (both deep), the destructor, the wire bytes, clone and the two
// accept operations. Put it last in the class body: it leaves the section private.
#define VELLUM_VALUE_HANDLE(Name)                                                                 \
public:                                                                                           \
    VELLUM_CLASS_ALLOCATION                                                                       \
    Name(Name const & other);                                                                     \
    Name & operator=(Name const & other);                                                         \
    ~Name() override;                                                                             \
    unsigned char const * rawBuffer() const override;                                             \
    unsigned short serializedSize() const override;                                               \
    ::Vellum::Templates::auto_ptr<::Vellum::Types::SimpleDataType> clone() const override;       \
    VELLUM_VISITABLE                                                                              \
                                                                                                  \
private:                                                                                          \
    struct Impl;                                                                                  \
    ::Vellum::Templates::auto_ptr<Impl> impl_;
