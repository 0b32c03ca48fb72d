include(CorvidPlainLibrary)
corvid_find_plain_library(Sodium sodium sodium/crypto_shorthash.h)
