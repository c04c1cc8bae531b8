// PDF files written object by object (ISO 32000). See the tests of the PDF folder for its use.
#pragma once
