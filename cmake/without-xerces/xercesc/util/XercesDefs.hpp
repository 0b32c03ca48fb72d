#error "this source is part of a program that does not load Xerces-C"
