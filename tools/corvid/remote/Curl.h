#pragma once

#include <curl/curl.h>

namespace Corvid::Tool {

/// The functions of libcurl that are called. Loaded when the first remote file is read: who reads
/// none needs no libcurl, and a process is free to fork until then.
struct Curl {
    decltype(&curl_global_init) globalInit;
    decltype(&curl_easy_init) init;
    decltype(&curl_easy_reset) reset;
    decltype(&curl_easy_cleanup) cleanup;
    decltype(&curl_easy_setopt) set;
    decltype(&curl_easy_getinfo) get;
    decltype(&curl_easy_perform) perform;
    decltype(&curl_easy_strerror) describe;
    decltype(&curl_slist_append) append;
    decltype(&curl_slist_free_all) freeList;
};

/// @throws IOError  there is no libcurl; says what to install.
const Curl& curl();

} // namespace Corvid::Tool
