#pragma once

#include <stdexcept>

/// The store could not be read or opened; what() says why, in English.
class StoreError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// What lies in the store's place is not a whole store of this program. A backup can replace it.
class UnusableStoreError : public StoreError
{
public:
    using StoreError::StoreError;
};

/// Another process holds the store.
class StoreInUseError : public StoreError
{
public:
    using StoreError::StoreError;
};
