#pragma once

#include <cstddef>
#include <vector>

#include "core/data/StringOverloadBase.h"
#include "kernels/Types.h"

namespace process::fft {

/**
 * Owns kernel memory that the pointer variables of a derived class hold. It knows the variables, not the memory, so
 * that a release can write null into them.
 *
 * Belongs to one thread at a time; its owner's lock sees to that.
 */
class IppFftBufferManager : public StringOverloadBase {
public:
    explicit IppFftBufferManager(std::string name);
    /// Releases what is managed. A class whose variables are members has called releaseAtEnd() before.
    ~IppFftBufferManager() override;
    IppFftBufferManager(const IppFftBufferManager &) = delete;
    IppFftBufferManager &operator=(const IppFftBufferManager &) = delete;

    /// Takes the memory over that a variable holds. @return false, with a warning, for one that holds null
    bool addToIppBuffers(void **buffer);
    void addBufferDeniedMessageToLog(void **buffer);

    /**
     * Allocates memory for a variable that holds null, and manages it.
     * @param length in elements
     * @return false, with a warning, if the variable holds memory already or there is none to be had
     */
    bool allocateIppBuffer8u(Ipp8u **buffer, int length);
    bool allocateIppBuffer32f(Ipp32f **buffer, int length);
    bool allocateIppBuffer32fc(Ipp32fc **buffer, int length);

    /// Gives all managed memory back and writes null into its variables.
    void freeBuffers();

    std::string toString() const override;

protected:
    /// The destructor's work, once: for derived classes, while their variables are still there.
    void releaseAtEnd();

    const std::string name;

private:
    template <class Element>
    bool allocate(Element **buffer, int length, Element *(*allocator)(int));

    std::vector<void **> managedBuffers;
    bool ended = false;
};

} // namespace process::fft
