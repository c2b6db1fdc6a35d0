// Stands in for a distribution library that lacks two of the five functions.
extern "C" {
__declspec(dllexport) short pdfNormal() { return 0; }
__declspec(dllexport) short pdfStudent() { return 0; }
__declspec(dllexport) short pdfChisq() { return 0; }
}
