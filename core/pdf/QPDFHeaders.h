// libqpdf's headers, as far as they are needed here. Part of what stands behind QPDFFile.h.
#pragma once

// QPDFObjectHandle.hh includes JSON.hh, which Clang does not accept as C++20: a class in it has a
// vector of itself and a virtual destructor. Nobody here has to do with JSON, so it is kept out.
#ifndef JSON_HH
#define JSON_HH
class JSON;
#endif

#include <qpdf/InputSource.hh>
#include <qpdf/Pipeline.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFExc.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <qpdf/QPDFStreamFilter.hh>
#include <qpdf/QPDFXRefEntry.hh>
