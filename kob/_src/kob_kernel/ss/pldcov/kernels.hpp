// The one-pass kernels by name: no indices (i) or indices (I); unweighted (_) or weighted (W); variables in rows (R) or
// columns (C). The unweighted one for indices and rows has no name of its own. `Real` is the type of the data.
namespace {
using namespace orx::ss::pldcov;

#define ORX_PLDCOV(INDEXED, WEIGHTED, STORAGE)                                              \
  static void _vSSPldCovKernel_##INDEXED##WEIGHTED##STORAGE(const KernelArgs<Real>& args) { \
    one_pass<#INDEXED[0] == 'I', #WEIGHTED[0] == 'W', #STORAGE[0] == 'R'>(args);            \
  }
extern "C" {
ORX_PLDCOV(i, _, R)
ORX_PLDCOV(i, _, C)
ORX_PLDCOV(i, W, R)
ORX_PLDCOV(i, W, C)
ORX_PLDCOV(I, _, C)
ORX_PLDCOV(I, W, R)
ORX_PLDCOV(I, W, C)
}

constexpr KernelTable<Real> kKernelTable = {
    {{{_vSSPldCovKernel_i_R, _vSSPldCovKernel_i_C}, {_vSSPldCovKernel_iWR, _vSSPldCovKernel_iWC}},
     {{nullptr, _vSSPldCovKernel_I_C}, {_vSSPldCovKernel_IWR, _vSSPldCovKernel_IWC}}}};

void _vSSPldCovThreader(int i, int t, int T, void* arguments) {
  Computation<Real>& c = *static_cast<Computation<Real>*>(arguments);
  const KernelArgs<Real> args = {&c, c.groups[i], c.room(t)};
  _vSSPldCovCalculateGroup(args, kKernelTable);
  write_group(c, args.group, args.room);
  if (c.estimates & KOB_SS_POOLED_COVARIANCE)
    c.threading->orderedSection(i, t, T, arguments, _vSSPldCovThreaderOrdered<Real>);
}

}  // namespace
