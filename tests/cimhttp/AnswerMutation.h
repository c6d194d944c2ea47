#pragma once

#include "SchemaServer.h"

#include <random>
#include <string>

/// One thing that can be changed in a server's answer to EnumerateInstances; kDoubledInstance, kOtherKey, kNoKey,
/// kOtherClass, kUnknownClass and kCut also in one to EnumerateInstanceNames. Which value, property or instance it
/// strikes is random.
enum class Mutation {
    kOtherValue,      ///< another value of the type, also within an array
    kNoValue,         ///< null, or one element of an array less
    kNoProperty,      ///< a property that is not there
    kOtherName,       ///< a property under another name
    kOtherType,       ///< a property of another type
    kOtherArrayness,  ///< a scalar for an array, or an array for a scalar
    kDoubledInstance, ///< an instance that is there twice
    kOtherKey,        ///< a path with another key value
    kNoKey,           ///< a path that lacks a key
    kOtherClass,      ///< an instance, its path or both of another class of the schema
    kUnknownClass,    ///< the same of a class that there is not
    kGarbage,         ///< a text that is no value of the type
    kCut,             ///< an answer that ends in the middle
};

/// The answer after one mutation.
struct MutatedAnswer {
    /// What a reader that loses nothing makes of it.
    enum class Expectation {
        kShown,   ///< it shows all that was sent
        kRefused, ///< it cannot take all of it, and says so
        kEither,
    };

    SchemaServer::Sent sent;
    Expectation expectation = Expectation::kEither;
    std::string what; ///< for people
};

/// Equal bodies and equal states of `random` give equal results.
MutatedAnswer Mutate(const std::string& body, Mutation mutation, std::mt19937& random);
