// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Embedded objects as CBOR. Reading takes events, not a document, so that hostile bytes can
// neither nest without end nor ask for memory: only the two levels below are accepted.
//
//   {"Object": null | bool | integer | float | text | bytes | {"Date": microseconds}}

#include "IDTag/Archive.h"

#include <limits>
#include <nlohmann/json.hpp>

namespace {

using Json = nlohmann::json;

constexpr char kObjectKey[] = "Object"; // Fixed: the root object's key.
constexpr char kDateKey[] = "Date";     // Fixed: marks a date.

struct CValueOf {
    Json operator()(std::monostate) const { return nullptr; }
    Json operator()(std::vector<std::uint8_t> const& bytes) const { return Json::binary(bytes); }
    Json operator()(CDate date) const { return {{kDateKey, date.m_nMicroseconds}}; }
    template <typename Plain>
    Json operator()(Plain const& value) const {
        return value;
    }
};

/// Listens to the parser; every answer of false ends the parsing.
class CObjectReader final : public Json::json_sax_t {
public:
    bool null() override { return Accept(std::monostate()); }
    bool boolean(bool value) override { return Accept(value); }
    bool number_integer(std::int64_t value) override {
        return m_nDepth == 2 ? AcceptDate(value) : Accept(value);
    }
    bool number_unsigned(std::uint64_t value) override {
        return value <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()) &&
               number_integer(static_cast<std::int64_t>(value));
    }
    bool number_float(double value, std::string const& /*text*/) override { return Accept(value); }
    bool string(std::string& value) override { return Accept(std::move(value)); }
    bool binary(Json::binary_t& value) override {
        return Accept(std::vector<std::uint8_t>(value.begin(), value.end()));
    }
    bool start_object(std::size_t /*count*/) override {
        ++m_nDepth;
        return m_nDepth == 1 || (m_nDepth == 2 && m_sKey == kObjectKey);
    }
    bool key(std::string& name) override {
        m_sKey = name;
        return true;
    }
    bool end_object() override {
        --m_nDepth;
        return true;
    }
    bool start_array(std::size_t /*count*/) override { return false; }
    bool end_array() override { return false; }
    bool parse_error(std::size_t /*position*/, std::string const& /*token*/,
                     nlohmann::detail::exception const& /*error*/) override {
        return false;
    }

    CArchiveObject m_object;

private:
    bool Accept(CArchiveObject value) {
        if (m_nDepth == 1 && m_sKey == kObjectKey) {
            m_object = std::move(value);
        }
        return m_nDepth == 1;
    }

    bool AcceptDate(std::int64_t microseconds) {
        m_object = CDate{microseconds};
        return m_sKey == kDateKey;
    }

    int m_nDepth = 0;
    std::string m_sKey;
};

} // namespace

CArchive& CArchive::operator<<(CArchiveObject const& object) {
    std::vector<std::uint8_t> const bytes =
        Json::to_cbor({{kObjectKey, std::visit(CValueOf(), object)}});
    auto const length = static_cast<std::uint32_t>(bytes.size());
    Write(&length, sizeof length);
    Write(bytes.data(), length);
    return *this;
}

CArchive& CArchive::operator>>(CArchiveObject& object) {
    object = CArchiveObject();
    std::uint32_t length = 0;
    Read(&length, sizeof length, 0);
    if (length > GetAvailable()) {
        return *this;
    }
    std::vector<std::uint8_t> bytes(length);
    Read(bytes.data(), length, 0);
    CObjectReader reader;
    if (Json::sax_parse(bytes, &reader, Json::input_format_t::cbor)) {
        object = std::move(reader.m_object);
    }
    return *this;
}
