! What this machine's Fortran runtime reads from each of the files PREFIX1, PREFIX2, ... (prefix and number of files
! on standard input): an integer and three reals in one read, an integer in a second. Answers each with
! "status integer bits bits bits status integer", and a `T` in front where it refused a repeated value for its type.
program list_directed_oracle
  use iso_fortran_env, only: int64, real64
  implicit none
  character(len=200) :: prefix, message
  character(len=12) :: number
  integer :: files, k, first, second, i, j
  real(real64) :: v(3)
  read (*, '(a)') prefix
  read (*, *) files
  do k = 1, files
    write (number, '(i0)') k
    open (19, file=trim(prefix)//trim(number), status='old', action='read')
    i = -7
    j = -5
    v = [-1.0_real64, -2.0_real64, -3.0_real64]
    message = ' '
    second = 0
    read (19, *, iostat=first, iomsg=message) i, v
    if (first == 0) read (19, *, iostat=second, iomsg=message) j
    close (19)
    if (message(1:9) == 'Read type') then
      write (*, '(a)', advance='no') 'T '
    else
      write (*, '(a)', advance='no') '- '
    end if
    write (*, '(i0,1x,i0,3(1x,z16.16),1x,i0,1x,i0)') min(abs(first), 1), i, transfer(v, [1_int64]), &
      min(abs(second), 1), j
  end do
end program list_directed_oracle
