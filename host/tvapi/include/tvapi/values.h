// The host's typed value classes: property values (flag, integer, real or
// text with a type tag), attribute values and storage values.
#pragma once

#include "tvapi/core.h"

namespace tvapi {

class TVAPI_API PropertyValue {
public:
    enum PropertyValueType : int { Empty = 0, Bool = 1, Int = 2, Double = 3, String = 4 };

    PropertyValue();
    PropertyValue(const PropertyValue&);
    PropertyValue(PropertyValue&&) noexcept;
    PropertyValue& operator=(const PropertyValue&);
    PropertyValue& operator=(PropertyValue&&) noexcept;
    ~PropertyValue();

    bool GetBool() const;
    int GetInt() const;
    double GetDouble() const;
    WString GetString() const;
    PropertyValueType GetValueType() const;

    void SetBool(bool);
    void SetInt(int);
    void SetDouble(double);
    void SetString(const WString&);

    // Conversions to the asked type, whatever the stored type is.
    bool ToBool() const;
    int ToInt() const;
    double ToDouble() const;
    WString ToString() const;

private:
    PropertyValueType type_ = Empty;
    bool bool_ = false;
    int int_ = 0;
    double double_ = 0.0;
    WString string_;
};

// An attribute cell value; the binding only copies and moves it.
class TVAPI_API AttributeValue {
public:
    AttributeValue();
    explicit AttributeValue(const WString& text);
    AttributeValue(const AttributeValue&);
    AttributeValue(AttributeValue&&) noexcept;
    AttributeValue& operator=(const AttributeValue&);
    AttributeValue& operator=(AttributeValue&&) noexcept;
    ~AttributeValue();

    const WString& Text() const { return text_; }

private:
    WString text_;
};

// A value kept in a user data storage; the binding only copies and moves it.
class TVAPI_API StorageValue {
public:
    StorageValue();
    explicit StorageValue(const WString& text);
    StorageValue(const StorageValue&);
    StorageValue(StorageValue&&) noexcept;
    StorageValue& operator=(const StorageValue&);
    StorageValue& operator=(StorageValue&&) noexcept;
    ~StorageValue();

    const WString& Text() const { return text_; }

private:
    WString text_;
};

}  // namespace tvapi
