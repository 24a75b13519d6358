! Fields and records as the Fortran library renders them, into memory. For fields one WRITE takes all values, so that
! only the rendering counts; records take one WRITE each, as in a program.
module fortran_fields
    use, intrinsic :: iso_c_binding, only: c_char, c_float, c_int32_t
    implicit none
    private

contains

    subroutine fortran_reals(values, count, width, decimals, text) bind(c)
        integer(c_int32_t), value :: count, width, decimals
        real(c_float), intent(in) :: values(count)
        character(kind=c_char), intent(inout) :: text(width*count)
        character(len=16) :: layout
        write (layout, '("(F",I0,".",I0,")")') width, decimals
        call write_all(values, count, width, layout, text)
    end subroutine

    subroutine fortran_free_reals(values, count, text) bind(c)
        integer(c_int32_t), value :: count
        real(c_float), intent(in) :: values(count)
        character(kind=c_char), intent(inout) :: text(14*count)
        call write_all(values, count, 14, '(1PG14.6)', text)
    end subroutine

    ! The characters of `text`, seen as fields of `width`.
    subroutine write_all(values, count, width, layout, fields)
        integer(c_int32_t), intent(in) :: count, width
        real(c_float), intent(in) :: values(count)
        character(len=*), intent(in) :: layout
        character(len=width), intent(inout) :: fields(count)
        write (fields, layout) values
    end subroutine

    subroutine fortran_integers(values, count, width, text) bind(c)
        integer(c_int32_t), value :: count, width
        integer(c_int32_t), intent(in) :: values(count)
        character(kind=c_char), intent(inout) :: text(width*count)
        call write_integers(values, count, width, text)
    end subroutine

    subroutine write_integers(values, count, width, fields)
        integer(c_int32_t), intent(in) :: count, width
        integer(c_int32_t), intent(in) :: values(count)
        character(len=width), intent(inout) :: fields(count)
        character(len=16) :: layout
        write (layout, '("(I",I0,")")') width
        write (fields, layout) values
    end subroutine

    subroutine fortran_texts(texts, count, width, text) bind(c)
        integer(c_int32_t), value :: count, width
        character(kind=c_char), intent(in) :: texts(width*count)
        character(kind=c_char), intent(inout) :: text(width*count)
        call write_texts(texts, count, width, text)
    end subroutine

    subroutine write_texts(texts, count, width, fields)
        integer(c_int32_t), intent(in) :: count, width
        character(len=width), intent(in) :: texts(count)
        character(len=width), intent(inout) :: fields(count)
        write (fields, '(A)') texts
    end subroutine

    subroutine fortran_row_records(integers, reals, count, lines) bind(c)
        integer(c_int32_t), value :: count
        integer(c_int32_t), intent(in) :: integers(4, count)
        real(c_float), intent(in) :: reals(16, count)
        character(kind=c_char), intent(inout) :: lines(260*count)
        call write_rows(integers, reals, count, lines)
    end subroutine

    subroutine write_rows(integers, reals, count, lines)
        integer(c_int32_t), intent(in) :: count
        integer(c_int32_t), intent(in) :: integers(4, count)
        real(c_float), intent(in) :: reals(16, count)
        character(len=260), intent(inout) :: lines(count)
        integer :: i
        do i = 1, count
            write (lines(i), '(4(I5),16(F15.5))') integers(:, i), reals(:, i)
        end do
    end subroutine

    subroutine fortran_pair_records(times, values, count, lines) bind(c)
        integer(c_int32_t), value :: count
        real(c_float), intent(in) :: times(count), values(count)
        character(kind=c_char), intent(inout) :: lines(25*count)
        call write_pairs(times, values, count, lines)
    end subroutine

    subroutine write_pairs(times, values, count, lines)
        integer(c_int32_t), intent(in) :: count
        real(c_float), intent(in) :: times(count), values(count)
        character(len=25), intent(inout) :: lines(count)
        integer :: i
        do i = 1, count
            write (lines(i), '(F10.4,5x,F10.4)') times(i), values(i)
        end do
    end subroutine

    subroutine fortran_count_records(counts, count, lines) bind(c)
        integer(c_int32_t), value :: count
        integer(c_int32_t), intent(in) :: counts(count)
        character(kind=c_char), intent(inout) :: lines(40*count)
        call write_counts(counts, count, lines)
    end subroutine

    subroutine write_counts(counts, count, lines)
        integer(c_int32_t), intent(in) :: count
        integer(c_int32_t), intent(in) :: counts(count)
        character(len=40), intent(inout) :: lines(count)
        integer :: i
        do i = 1, count
            write (lines(i), "(I5,15x,'Number of Time Pairs')") counts(i)
        end do
    end subroutine

    subroutine fortran_free_pair_records(times, values, count, lines) bind(c)
        integer(c_int32_t), value :: count
        real(c_float), intent(in) :: times(count), values(count)
        character(kind=c_char), intent(inout) :: lines(28*count)
        call write_free_pairs(times, values, count, lines)
    end subroutine

    subroutine write_free_pairs(times, values, count, lines)
        integer(c_int32_t), intent(in) :: count
        real(c_float), intent(in) :: times(count), values(count)
        character(len=28), intent(inout) :: lines(count)
        integer :: i
        do i = 1, count
            write (lines(i), '(2(1PG14.6))') times(i), values(i)
        end do
    end subroutine

end module
