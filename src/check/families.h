// The name of each vector family, by its C type, for the lines about vectors.
#pragma once

#include "tvAPIC.h"

namespace tvapic::check {

template <class CV>
inline constexpr const char* kFamily = nullptr;

template <> inline constexpr const char* kFamily<BoolVector_t> = "BoolVector";
template <> inline constexpr const char* kFamily<ColorVector_t> = "ColorVector";
template <> inline constexpr const char* kFamily<EnumVector_t> = "EnumVector";
template <> inline constexpr const char* kFamily<Int32Vector_t> = "Int32Vector";
template <> inline constexpr const char* kFamily<Uint32Vector_t> = "Uint32Vector";
template <> inline constexpr const char* kFamily<FloatVector_t> = "FloatVector";
template <> inline constexpr const char* kFamily<DoubleVector_t> = "DoubleVector";
template <> inline constexpr const char* kFamily<NumericIdVector_t> = "NumericIdVector";
template <> inline constexpr const char* kFamily<Uint8Vector_t> = "Uint8Vector";
template <> inline constexpr const char* kFamily<Uint8VectorVector_t> = "Uint8VectorVector";
template <> inline constexpr const char* kFamily<StringVector_t> = "StringVector";
template <> inline constexpr const char* kFamily<StringVectorVector_t> = "StringVectorVector";
template <> inline constexpr const char* kFamily<ObjectReferenceVector_t> = "ObjectReferenceVector";
template <> inline constexpr const char* kFamily<ObjectReferenceVectorVector_t> = "ObjectReferenceVectorVector";
template <> inline constexpr const char* kFamily<PropertyValueVector_t> = "PropertyValueVector";
template <> inline constexpr const char* kFamily<AttributeValueVector_t> = "AttributeValueVector";
template <> inline constexpr const char* kFamily<StorageValueVector_t> = "StorageValueVector";

}  // namespace tvapic::check
