// What must not compile in a program that does without Xerces-C.
#include <xercesc/dom/DOM.hpp>
