include(CorvidPlainLibrary)
corvid_find_plain_library(XQilla xqilla xqilla/xqilla-dom3.hpp)
