# Writes ${OUT}: a row of the export table for every image export that
# ${HEADER} declares (name, section, thunk); the family files give the shapes.
file(STRINGS "${HEADER}" lines)
set(rows "")
set(pending "")
foreach(line IN LISTS lines)
  if(line MATCHES "^TPXCC_API TpxStatus (tpxi[A-Za-z0-9_]+)\\(")
    list(APPEND pending ${CMAKE_MATCH_1})
  elseif(line MATCHES "^/\\* end of (.*) \\*/")
    set(section "${CMAKE_MATCH_1}")
    foreach(name IN LISTS pending)
      if(NOT name MATCHES "GetBufferSize")  # no image
        string(APPEND rows "    {\"${section}\", \"${name}\", &rows::thunk<&${name}>},\n")
      endif()
    endforeach()
    set(pending "")
  endif()
endforeach()
file(CONFIGURE OUTPUT "${OUT}" @ONLY CONTENT "#include \"support/rows/rows.hpp\"
namespace tpxtest {
const HeaderRow kHeaderRows[] = {
@rows@};
const size_t kHeaderRowCount = sizeof kHeaderRows / sizeof kHeaderRows[0];
}  // namespace tpxtest
")
