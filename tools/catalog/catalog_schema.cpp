// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "catalog_schema.hpp"

#include "tools/program/json.hpp"

#include <string_view>

namespace tools {
namespace {

constexpr std::string_view relax_ng = R"(<?xml version="1.0" encoding="UTF-8"?>
<!-- Message catalogs (.xmc). A catalog names no schema itself, or it could not be loaded: tell your editor. -->
<grammar xmlns="http://relaxng.org/ns/structure/1.0" datatypeLibrary="http://www.w3.org/2001/XMLSchema-datatypes">
  <start>
    <element name="xmc">
      <attribute name="version">
        <choice>
          <value type="string">1.0</value> <value type="string">1.1</value>
        </choice>
      </attribute>
      <oneOrMore>
        <choice>
          <ref name="catalog"/>
          <ref name="include"/>
        </choice>
      </oneOrMore>
    </element>
  </start>

  <define name="catalog">
    <element name="catalog">
      <attribute name="name"/>
      <attribute name="lang"><ref name="some-text"/></attribute>
      <zeroOrMore><ref name="msg"/></zeroOrMore>
    </element>
  </define>

  <define name="include">
    <element name="include">
      <attribute name="file"><ref name="some-text"/></attribute>
      <ref name="nothing"/>
    </element>
  </define>

  <define name="msg">
    <element name="msg">
      <attribute name="name"/>
      <optional><attribute name="meta"/></optional>
      <mixed>
        <zeroOrMore>
          <choice>
            <element name="br"><ref name="nothing"/></element>
            <ref name="arg"/>
          </choice>
        </zeroOrMore>
      </mixed>
    </element>
  </define>

  <define name="arg">
    <element>
      <choice><name>arg</name><name>argument</name></choice>
      <attribute name="name"><ref name="some-text"/></attribute>
      <choice>
        <ref name="plain"/>
        <ref name="int"/>
        <ref name="double"/>
        <ref name="memory"/>
        <ref name="metric"/>
        <ref name="duration"/>
      </choice>
      <ref name="nothing"/>
    </element>
  </define>

  <!-- Texts, and the types that always show as ?invalid?. -->
  <define name="plain">
    <optional>
      <attribute name="type">
        <choice>
          <value type="string">string</value> <value type="string">value</value>
          <value type="string">number</value> <value type="string">time</value>
          <value type="string">date</value>
        </choice>
      </attribute>
    </optional>
  </define>

  <define name="int">
    <attribute name="type"><value type="string">int</value></attribute>
    <optional>
      <attribute name="base">
        <choice>
          <value type="string">dec</value> <value type="string">spaced_dec</value>
          <value type="string">hex</value> <value type="string">oct</value> <value type="string">bin</value>
        </choice>
      </attribute>
    </optional>
    <ref name="fieldsize"/>
  </define>

  <define name="double">
    <attribute name="type"><value type="string">double</value></attribute>
    <ref name="precision"/>
    <ref name="fieldsize"/>
  </define>

  <define name="memory">
    <attribute name="type">
      <choice>
        <value type="string">memory</value> <value type="string">mem</value>
        <value type="string">memory_unit</value> <value type="string">mem_unit</value>
      </choice>
    </attribute>
    <optional>
      <attribute name="target_unit">
        <choice><value type="string">any</value><ref name="memory-unit"/></choice>
      </attribute>
    </optional>
    <optional><attribute name="base_unit"><ref name="memory-unit"/></attribute></optional>
    <ref name="precision"/>
    <ref name="fieldsize"/>
  </define>

  <define name="memory-unit">
    <choice>
      <value type="string">B</value> <value type="string">KB</value> <value type="string">MB</value>
      <value type="string">GB</value> <value type="string">TB</value> <value type="string">PB</value>
      <value type="string">EB</value> <value type="string">ZB</value> <value type="string">YB</value>
    </choice>
  </define>

  <define name="metric">
    <attribute name="type">
      <choice>
        <value type="string">metric</value> <value type="string">metric_unit</value>
      </choice>
    </attribute>
    <optional>
      <attribute name="target_unit">
        <choice>
          <value type="string">any</value> <value type="string">base</value>
          <ref name="prefix"/>
        </choice>
      </attribute>
    </optional>
    <optional><attribute name="base_unit"><ref name="prefix"/></attribute></optional>
    <ref name="precision"/>
    <ref name="fieldsize"/>
  </define>

  <define name="prefix">
    <choice>
      <value type="string">a</value> <value type="string">f</value> <value type="string">p</value>
      <value type="string">n</value> <value type="string">mc</value> <value type="string">m</value>
      <value type="string">k</value> <value type="string">M</value> <value type="string">G</value>
      <value type="string">T</value> <value type="string">P</value> <value type="string">E</value>
      <value type="string">Z</value> <value type="string">Y</value>
    </choice>
  </define>

  <define name="duration">
    <attribute name="type"><value type="string">duration</value></attribute>
    <optional>
      <attribute name="short_form">
        <choice>
          <value type="string">true</value> <value type="string">false</value>
        </choice>
      </attribute>
    </optional>
    <ref name="precision"/>
  </define>

  <define name="precision">
    <optional><attribute name="precision"><ref name="size"/></attribute></optional>
  </define>

  <define name="fieldsize">
    <optional><attribute name="fieldsize"><ref name="size"/></attribute></optional>
  </define>

  <define name="size">
    <data type="string"><param name="pattern">0|[1-9][0-9]{0,2}|[1-3][0-9]{3}|40[0-8][0-9]|409[0-6]</param></data>
  </define>

  <define name="some-text">
    <data type="string"><param name="minLength">1</param></data>
  </define>

  <!-- Not even a blank. -->
  <define name="nothing">
    <value type="string"/>
  </define>
</grammar>
)";

constexpr std::string_view xsd = R"(<?xml version="1.0" encoding="UTF-8"?>
<!-- Message catalogs (.xmc). A catalog names no schema itself, or it could not be loaded: tell your editor. -->
<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema">
  <xs:element name="xmc">
    <xs:complexType>
      <xs:choice maxOccurs="unbounded">
        <xs:element name="catalog" type="catalog"/>
        <xs:element name="include" type="include"/>
      </xs:choice>
      <xs:attribute name="version" type="version" use="required"/>
    </xs:complexType>
  </xs:element>

  <xs:complexType name="catalog">
    <xs:sequence>
      <xs:element name="msg" type="msg" minOccurs="0" maxOccurs="unbounded"/>
    </xs:sequence>
    <xs:attribute name="name" type="xs:string" use="required"/>
    <xs:attribute name="lang" type="some-text" use="required"/>
  </xs:complexType>

  <xs:complexType name="include">
    <xs:attribute name="file" type="some-text" use="required"/>
  </xs:complexType>

  <xs:complexType name="msg" mixed="true">
    <xs:choice minOccurs="0" maxOccurs="unbounded">
      <xs:element name="br"><xs:complexType/></xs:element>
      <xs:element name="arg" type="arg"/>
      <xs:element name="argument" type="arg"/>
    </xs:choice>
    <xs:attribute name="name" type="xs:string" use="required"/>
    <xs:attribute name="meta" type="xs:string"/>
  </xs:complexType>

  <!-- Which options an argument may have depends on its type, which cannot be told here. -->
  <xs:complexType name="arg">
    <xs:attribute name="name" type="some-text" use="required"/>
    <xs:attribute name="type" type="type"/>
    <xs:attribute name="base" type="base"/>
    <xs:attribute name="fieldsize" type="size"/>
    <xs:attribute name="precision" type="size"/>
    <xs:attribute name="target_unit" type="target-unit"/>
    <xs:attribute name="base_unit" type="unit"/>
    <xs:attribute name="short_form" type="short-form"/>
  </xs:complexType>

  <xs:simpleType name="version">
    <xs:restriction base="xs:string">
      <xs:enumeration value="1.0"/> <xs:enumeration value="1.1"/>
    </xs:restriction>
  </xs:simpleType>

  <xs:simpleType name="type">
    <xs:restriction base="xs:string">
      <xs:enumeration value="string"/> <xs:enumeration value="value"/> <xs:enumeration value="number"/>
      <xs:enumeration value="time"/> <xs:enumeration value="date"/> <xs:enumeration value="int"/>
      <xs:enumeration value="double"/> <xs:enumeration value="memory"/> <xs:enumeration value="mem"/>
      <xs:enumeration value="memory_unit"/> <xs:enumeration value="mem_unit"/> <xs:enumeration value="metric"/>
      <xs:enumeration value="metric_unit"/> <xs:enumeration value="duration"/>
    </xs:restriction>
  </xs:simpleType>

  <xs:simpleType name="base">
    <xs:restriction base="xs:string">
      <xs:enumeration value="dec"/> <xs:enumeration value="spaced_dec"/> <xs:enumeration value="hex"/>
      <xs:enumeration value="oct"/> <xs:enumeration value="bin"/>
    </xs:restriction>
  </xs:simpleType>

  <!-- Of memory sizes, and the prefixes of metric values. -->
  <xs:simpleType name="unit">
    <xs:restriction base="xs:string">
      <xs:enumeration value="B"/> <xs:enumeration value="KB"/> <xs:enumeration value="MB"/>
      <xs:enumeration value="GB"/> <xs:enumeration value="TB"/> <xs:enumeration value="PB"/>
      <xs:enumeration value="EB"/> <xs:enumeration value="ZB"/> <xs:enumeration value="YB"/>
      <xs:enumeration value="a"/> <xs:enumeration value="f"/> <xs:enumeration value="p"/>
      <xs:enumeration value="n"/> <xs:enumeration value="mc"/> <xs:enumeration value="m"/>
      <xs:enumeration value="k"/> <xs:enumeration value="M"/> <xs:enumeration value="G"/>
      <xs:enumeration value="T"/> <xs:enumeration value="P"/> <xs:enumeration value="E"/>
      <xs:enumeration value="Z"/> <xs:enumeration value="Y"/>
    </xs:restriction>
  </xs:simpleType>

  <xs:simpleType name="target-unit">
    <xs:union memberTypes="unit">
      <xs:simpleType>
        <xs:restriction base="xs:string">
          <xs:enumeration value="any"/> <xs:enumeration value="base"/>
        </xs:restriction>
      </xs:simpleType>
    </xs:union>
  </xs:simpleType>

  <xs:simpleType name="short-form">
    <xs:restriction base="xs:string">
      <xs:enumeration value="true"/> <xs:enumeration value="false"/>
    </xs:restriction>
  </xs:simpleType>

  <xs:simpleType name="size">
    <xs:restriction base="xs:string">
      <xs:pattern value="0|[1-9][0-9]{0,2}|[1-3][0-9]{3}|40[0-8][0-9]|409[0-6]"/>
    </xs:restriction>
  </xs:simpleType>

  <xs:simpleType name="some-text">
    <xs:restriction base="xs:string">
      <xs:minLength value="1"/>
    </xs:restriction>
  </xs:simpleType>
</xs:schema>
)";

} // namespace

exit_status print_schema(session const& session, schema_kind kind) {
    bool const is_relax_ng = kind == schema_kind::relax_ng;
    std::string_view const schema = is_relax_ng ? relax_ng : xsd;
    if (!session.is_json()) return session.out.write(schema), exit_good;
    json_writer json;
    json.begin_object();
    json.member("kind", is_relax_ng ? "relax-ng" : "xml-schema");
    json.member("schema", schema);
    json.end_object();
    session.out.line(json.text());
    return exit_good;
}

} // namespace tools
