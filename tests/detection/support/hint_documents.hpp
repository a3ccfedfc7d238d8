#pragma once
// Documents shared by the hint strategy tests.

namespace tolven::testing {

// Two tables: the hint-free search finds the shelves first; hints pick the books.
inline constexpr const char* kLibrary = R"(<library>
  <shelves>
    <shelf><code>A</code><floor>1</floor></shelf>
    <shelf><code>B</code><floor>2</floor></shelf>
    <shelf><code>C</code><floor>2</floor></shelf>
  </shelves>
  <books>
    <book id="b1"><title>Dune</title><price>9.5</price></book>
    <book id="b2"><title>Emma</title><price>7.25</price></book>
    <book id="b3"><title>Ulysses</title><price>12</price></book>
  </books>
</library>)";

// A feed in a default namespace, with a second, prefixed one.
inline constexpr const char* kFeed = R"(<feed xmlns="http://www.w3.org/2005/Atom" xmlns:geo="urn:geo">
  <title>Sensors</title>
  <entry><title>North</title><geo:lat>51.5</geo:lat></entry>
  <entry><title>South</title><geo:lat>51.4</geo:lat></entry>
  <entry><title>East</title><geo:lat>51.3</geo:lat></entry>
</feed>)";

}  // namespace tolven::testing
