# Run by an installation: in the texts of the folder `sdm_texts`, a link to what is only in the sources becomes its words.
file(GLOB_RECURSE texts "${sdm_texts}/*.md")
set(sources "include|platform|src|host|loadable|tools|tests|abi|bench|scripts|cmake|docs/man|docs/api|CONTRIBUTING\\.md|SECURITY\\.md")
foreach(text IN LISTS texts)
  file(READ "${text}" content)
  string(REGEX REPLACE "\\[([^]]*)\\]\\((\\.\\./)*(${sources})([/#][^)]*)?\\)" "\\1 (in the sources)" content "${content}")
  file(WRITE "${text}" "${content}")
endforeach()
