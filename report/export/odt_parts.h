#pragma once

namespace velcoran::report {

/// Fixed parts of a text document: manifest, styles of an A4 sheet across, the start of content and properties.
inline constexpr char kManifest[] =
    R"(<?xml version="1.0" encoding="UTF-8"?>
<manifest:manifest xmlns:manifest="urn:oasis:names:tc:opendocument:xmlns:manifest:1.0" manifest:version="1.2">
<manifest:file-entry manifest:full-path="/" manifest:version="1.2" manifest:media-type="application/vnd.oasis.opendocument.text"/>
<manifest:file-entry manifest:full-path="content.xml" manifest:media-type="text/xml"/>
<manifest:file-entry manifest:full-path="styles.xml" manifest:media-type="text/xml"/>
<manifest:file-entry manifest:full-path="meta.xml" manifest:media-type="text/xml"/>
</manifest:manifest>
)";

inline constexpr char kMetaStart[] =
    R"(<?xml version="1.0" encoding="UTF-8"?>
<office:document-meta xmlns:office="urn:oasis:names:tc:opendocument:xmlns:office:1.0" xmlns:dc="http://purl.org/dc/elements/1.1/" xmlns:meta="urn:oasis:names:tc:opendocument:xmlns:meta:1.0" office:version="1.2"><office:meta>)";

inline constexpr char kStyles[] =
    R"(<?xml version="1.0" encoding="UTF-8"?>
<office:document-styles xmlns:office="urn:oasis:names:tc:opendocument:xmlns:office:1.0" xmlns:style="urn:oasis:names:tc:opendocument:xmlns:style:1.0" xmlns:text="urn:oasis:names:tc:opendocument:xmlns:text:1.0" xmlns:fo="urn:oasis:names:tc:opendocument:xmlns:xsl-fo-compatible:1.0" xmlns:svg="urn:oasis:names:tc:opendocument:xmlns:svg-compatible:1.0" office:version="1.2">
<office:font-face-decls><style:font-face style:name="Arial" svg:font-family="Arial, 'Liberation Sans'" style:font-family-generic="swiss"/></office:font-face-decls>
<office:styles>
<style:default-style style:family="paragraph"><style:text-properties style:font-name="Arial" fo:font-size="8pt" fo:language="ro" fo:country="RO"/></style:default-style>
<style:style style:name="Standard" style:family="paragraph" style:class="text"/>
<style:style style:name="Heading" style:family="paragraph" style:parent-style-name="Standard" style:default-outline-level="1"><style:paragraph-properties fo:margin-bottom="2mm"/><style:text-properties fo:font-size="14pt" fo:font-weight="bold"/></style:style>
<style:style style:name="Head" style:family="paragraph" style:parent-style-name="Standard"><style:text-properties fo:font-size="10pt"/></style:style>
<style:style style:name="Footer" style:family="paragraph" style:parent-style-name="Standard"><style:paragraph-properties fo:text-align="end"/></style:style>
</office:styles>
<office:automatic-styles>
<style:page-layout style:name="Sheet"><style:page-layout-properties fo:page-width="297mm" fo:page-height="210mm" style:print-orientation="landscape" fo:margin-top="10mm" fo:margin-bottom="10mm" fo:margin-left="10mm" fo:margin-right="10mm"/><style:footer-style><style:header-footer-properties fo:min-height="6mm" fo:margin-top="2mm"/></style:footer-style></style:page-layout>
</office:automatic-styles>
<office:master-styles><style:master-page style:name="Standard" style:page-layout-name="Sheet"><style:footer><text:p text:style-name="Footer">Pagina <text:page-number text:select-page="current">1</text:page-number> din <text:page-count>1</text:page-count></text:p></style:footer></style:master-page></office:master-styles>
</office:document-styles>
)";

inline constexpr char kContentStart[] =
    R"(<?xml version="1.0" encoding="UTF-8"?>
<office:document-content xmlns:office="urn:oasis:names:tc:opendocument:xmlns:office:1.0" xmlns:style="urn:oasis:names:tc:opendocument:xmlns:style:1.0" xmlns:text="urn:oasis:names:tc:opendocument:xmlns:text:1.0" xmlns:table="urn:oasis:names:tc:opendocument:xmlns:table:1.0" xmlns:fo="urn:oasis:names:tc:opendocument:xmlns:xsl-fo-compatible:1.0" office:version="1.2"><office:automatic-styles>
<style:style style:name="Table" style:family="table"><style:table-properties style:width="277mm" table:align="left" fo:margin-top="3mm"/></style:style>
<style:style style:name="Row" style:family="table-row"><style:table-row-properties fo:keep-together="always"/></style:style>
<style:style style:name="Left" style:family="paragraph" style:parent-style-name="Standard"/>
<style:style style:name="Right" style:family="paragraph" style:parent-style-name="Standard"><style:paragraph-properties fo:text-align="end"/></style:style>
<style:style style:name="Bold" style:family="paragraph" style:parent-style-name="Standard"><style:text-properties fo:font-weight="bold"/></style:style>
<style:style style:name="BoldRight" style:family="paragraph" style:parent-style-name="Standard"><style:paragraph-properties fo:text-align="end"/><style:text-properties fo:font-weight="bold"/></style:style>
<style:style style:name="Keep" style:family="paragraph" style:parent-style-name="Standard"><style:paragraph-properties fo:keep-with-next="always"/><style:text-properties fo:font-size="9pt" fo:font-weight="bold"/></style:style>
)";

inline constexpr char kContentStyles[] =
    R"(<style:style style:name="Column" style:family="table-cell"><style:table-cell-properties fo:padding="0.6mm" fo:border-top="1pt solid #000000" fo:border-bottom="1pt solid #000000" style:vertical-align="bottom"/></style:style>
<style:style style:name="Cell" style:family="table-cell"><style:table-cell-properties fo:padding="0.4mm"/></style:style>
<style:style style:name="Group" style:family="table-cell"><style:table-cell-properties fo:padding-top="2mm" fo:padding-bottom="0.6mm" fo:padding-left="0.4mm" fo:padding-right="0.4mm"/></style:style>
<style:style style:name="Total" style:family="table-cell"><style:table-cell-properties fo:padding="0.4mm" fo:border-top="0.5pt solid #808080"/></style:style>
<style:style style:name="Grand" style:family="table-cell"><style:table-cell-properties fo:padding-top="2mm" fo:padding-bottom="0.6mm" fo:padding-left="0.4mm" fo:padding-right="0.4mm" fo:border-top="1pt solid #000000"/></style:style>
</office:automatic-styles><office:body><office:text>)";

}  // namespace velcoran::report
