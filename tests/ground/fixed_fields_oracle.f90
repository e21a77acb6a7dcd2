! What this machine's Fortran runtime prints for one number in one field. Reads records "KIND WIDTH DIGITS BITS"
! (I, F or E; two integers; the value's 64 bits as 16 hexadecimal digits) and answers each with "[field]".
program fixed_fields_oracle
  use iso_fortran_env, only: int64, real64
  implicit none
  character(len=1) :: kind
  integer :: width, digits, status
  integer(int64) :: bits
  character(len=32) :: edit
  character(len=80) :: field
  do
    read (*, '(a1,1x,i2,1x,i2,1x,z16)', iostat=status) kind, width, digits, bits
    if (status /= 0) exit
    if (kind == 'I') then
      write (edit, '(a,i0,a)') '(i', width, ')'
      write (field, edit) bits
    else
      write (edit, '(a,a,i0,a,i0,a)') '(', kind, width, '.', digits, ')'
      write (field, edit) transfer(bits, 1.0_real64)
    end if
    write (*, '(3a)') '[', field(1:width), ']'
  end do
end program fixed_fields_oracle
